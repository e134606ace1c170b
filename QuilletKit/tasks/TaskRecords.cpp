#include "tasks/TaskRecords.hpp"

#include "platform/UUID.hpp"

#include <filesystem>

namespace quillet {

using nlohmann::ordered_json;
using namespace persisted;

TaskSpec TaskSpec::make(PDFOperationKind operation, std::vector<std::string> inputs,
                        OutputRule outputRule, OperationParameters parameters) {
    return TaskSpec{newUUIDString(), operation, std::move(inputs), std::move(outputRule),
                    std::move(parameters)};
}

TaskSpec TaskSpec::fromJSON(const ordered_json& json) {
    const JSONObjectReader reader(json);
    TaskSpec spec;
    spec.id = requireUUID(reader, "id");
    spec.operation = reader.require<PDFOperationKind>("operation");
    spec.inputs = requireStrings(json, "inputs");
    spec.outputRule = OutputRule::fromJSON(requireMember(json, "outputRule"));
    spec.parameters = OperationParameters::fromJSON(requireMember(json, "parameters"));
    return spec;
}

std::vector<TaskSpec> TaskSpec::listFromJSON(const ordered_json& json) {
    if (!json.is_array()) {
        json_detail::throwMismatch("", "an array of task specs", json);
    }
    std::vector<TaskSpec> specs;
    specs.reserve(json.size());
    for (const auto& element : json) {
        specs.push_back(fromJSON(element));
    }
    return specs;
}

std::string encodedParameters(const OperationParameters& parameters) {
    return toJSON(parameters).dump();
}

std::optional<std::string> parametersDataWithoutPasswords(const std::string& data) {
    try {
        auto parameters = OperationParameters::fromJSON(ordered_json::parse(data));
        if (auto* protect = std::get_if<OperationParameters::Protect>(&parameters.value)) {
            protect->userPassword.clear();
            protect->ownerPassword.clear();
        } else if (auto* unprotect = std::get_if<OperationParameters::Unprotect>(&parameters.value)) {
            unprotect->password.clear();
        } else if (auto* redact = std::get_if<OperationParameters::Redact>(&parameters.value)) {
            // What a user wants gone is not written down anywhere else: the words and
            // expressions go with the password; areas and presets stay.
            redact->password.clear();
            for (auto& pattern : redact->patterns) {
                pattern.text.clear();
            }
        }
        return encodedParameters(parameters);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

TaskRecord TaskRecord::fromSpec(const TaskSpec& spec, TaskTime createdAt) {
    TaskRecord record;
    record.id = spec.id;
    record.createdAt = createdAt;
    record.operation = spec.operation;
    record.state = TaskState::queued;
    for (const auto& input : spec.inputs) {
        record.inputNames.push_back(std::filesystem::path(input).filename().string());
    }
    record.inputURLs = spec.inputs;
    try {
        record.parametersData = encodedParameters(spec.parameters);
    } catch (const std::exception&) {
        // A value JSON cannot hold (invalid UTF-8 in a password): the record simply has none.
    }
    return record;
}

TaskRecord TaskRecord::fromJSON(const ordered_json& json) {
    const JSONObjectReader reader(json);
    TaskRecord record;
    record.id = requireUUID(reader, "id");
    record.createdAt = requireTime(reader, "createdAt");
    record.operation = reader.require<PDFOperationKind>("operation");
    record.state = reader.require<TaskState>("state");
    record.inputNames = requireStrings(json, "inputNames");
    record.inputURLs = requireStrings(json, "inputURLs");
    record.outputURLs = requireStrings(json, "outputURLs");
    record.originalBytes = reader.require<std::int64_t>("originalBytes");
    record.resultBytes = reader.require<std::int64_t>("resultBytes");
    record.progress = reader.require<double>("progress");
    record.message = reader.ifPresent<std::string>("message");
    record.error = reader.ifPresent<std::string>("error");
    record.parametersData = optionalBytes(json, "parametersData");
    return record;
}

HistoryEntry HistoryEntry::fromRecord(const TaskRecord& record, TaskTime date, bool succeeded) {
    return HistoryEntry{record.id,          date,
                        record.operation,   record.inputNames,
                        record.inputURLs,   record.outputURLs,
                        record.originalBytes, record.resultBytes,
                        succeeded,          record.parametersData};
}

HistoryEntry HistoryEntry::fromJSON(const ordered_json& json) {
    const JSONObjectReader reader(json);
    HistoryEntry entry;
    entry.id = requireUUID(reader, "id");
    entry.date = requireTime(reader, "date");
    entry.operation = reader.require<PDFOperationKind>("operation");
    entry.inputNames = requireStrings(json, "inputNames");
    entry.inputURLs = requireStrings(json, "inputURLs");
    entry.outputURLs = requireStrings(json, "outputURLs");
    entry.originalBytes = reader.require<std::int64_t>("originalBytes");
    entry.resultBytes = reader.require<std::int64_t>("resultBytes");
    entry.succeeded = reader.require<bool>("succeeded");
    entry.parametersData = optionalBytes(json, "parametersData");
    return entry;
}

ordered_json toJSON(const TaskSpec& spec) {
    return ordered_json{{"id", spec.id},
                        {"operation", std::string(rawValue(spec.operation))},
                        {"inputs", stringsJSON(spec.inputs)},
                        {"outputRule", toJSON(spec.outputRule)},
                        {"parameters", toJSON(spec.parameters)}};
}

ordered_json toJSON(const std::vector<TaskSpec>& specs) {
    auto array = ordered_json::array();
    for (const auto& spec : specs) {
        array.push_back(toJSON(spec));
    }
    return array;
}

ordered_json toJSON(const TaskRecord& record) {
    ordered_json json{{"id", record.id},
                      {"createdAt", secondsSinceReferenceDate(record.createdAt)},
                      {"operation", std::string(rawValue(record.operation))},
                      {"state", std::string(rawValue(record.state))},
                      {"inputNames", stringsJSON(record.inputNames)},
                      {"inputURLs", stringsJSON(record.inputURLs)},
                      {"outputURLs", stringsJSON(record.outputURLs)},
                      {"originalBytes", record.originalBytes},
                      {"resultBytes", record.resultBytes},
                      {"progress", record.progress}};
    if (record.message) {
        json["message"] = *record.message;
    }
    if (record.error) {
        json["error"] = *record.error;
    }
    if (record.parametersData) {
        json["parametersData"] = base64Encoded(*record.parametersData);
    }
    return json;
}

ordered_json toJSON(const HistoryEntry& entry) {
    ordered_json json{{"id", entry.id},
                      {"date", secondsSinceReferenceDate(entry.date)},
                      {"operation", std::string(rawValue(entry.operation))},
                      {"inputNames", stringsJSON(entry.inputNames)},
                      {"inputURLs", stringsJSON(entry.inputURLs)},
                      {"outputURLs", stringsJSON(entry.outputURLs)},
                      {"originalBytes", entry.originalBytes},
                      {"resultBytes", entry.resultBytes},
                      {"succeeded", entry.succeeded}};
    if (entry.parametersData) {
        json["parametersData"] = base64Encoded(*entry.parametersData);
    }
    return json;
}

} // namespace quillet
