#include "output/OutputRule.hpp"

#include "model/JSONObjectReader.hpp"

namespace quillet {

using Json = nlohmann::ordered_json;

Json toJSON(const OutputRule& rule) {
    Json json = Json::object();
    json["location"] = rawValue(rule.location);
    json["subfolderName"] = rule.subfolderName;
    json["customFolder"] = rule.customFolder;
    json["nameTemplate"] = rule.nameTemplate;
    json["replaceOriginal"] = rule.replaceOriginal;
    return json;
}

OutputRule OutputRule::fromJSON(const Json& json) {
    JSONObjectReader reader(json);
    OutputRule rule;
    rule.location = reader.require<Location>("location");
    rule.subfolderName = reader.require<std::string>("subfolderName");
    rule.customFolder = reader.require<std::string>("customFolder");
    rule.nameTemplate = reader.require<std::string>("nameTemplate");
    rule.replaceOriginal = reader.require<bool>("replaceOriginal");
    return rule;
}

void to_json(Json& json, const OutputRule& rule) {
    json = toJSON(rule);
}

void from_json(const Json& json, OutputRule& rule) {
    rule = OutputRule::fromJSON(json);
}

} // namespace quillet
