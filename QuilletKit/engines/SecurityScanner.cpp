#include "engines/SecurityScanner.hpp"

#include <qpdf/QPDFObjGen.hh>

#include <set>

namespace quillet {
namespace {

int countEntries(QPDFObjectHandle node, std::set<QPDFObjGen>& visited, int depth) {
    if (!node.isDictionary() || depth > 64) {
        return 0;
    }
    if (node.isIndirect() && !visited.insert(node.getObjGen()).second) {
        return 0;
    }
    auto names = node.getKey("/Names");
    if (names.isArray()) {
        return names.getArrayNItems() / 2;
    }
    auto kids = node.getKey("/Kids");
    int total = 0;
    if (kids.isArray()) {
        for (int i = 0; i < kids.getArrayNItems(); ++i) {
            total += countEntries(kids.getArrayItem(i), visited, depth + 1);
        }
    }
    return total;
}

bool openActionRunsScript(QPDFObjectHandle action) {
    if (action.isStream()) {
        return true;
    }
    if (action.isDictionary()) {
        return action.getKey("/JS").isString();
    }
    if (action.isArray() && action.getArrayNItems() >= 3) {
        return action.getArrayItem(action.getArrayNItems() - 1).isString();
    }
    return false;
}

} // namespace

int SecurityScanner::countNameTreeEntries(QPDFObjectHandle node) {
    std::set<QPDFObjGen> visited;
    return countEntries(node, visited, 0);
}

SecurityScanner::Result SecurityScanner::scan(QPDFObjectHandle catalog) {
    Result result;
    try {
        if (!catalog.isDictionary()) {
            return result;
        }
        auto names = catalog.getKey("/Names");
        if (names.isDictionary()) {
            result.attachmentCount = countNameTreeEntries(names.getKey("/EmbeddedFiles"));
            result.javascriptDetected = countNameTreeEntries(names.getKey("/JavaScript")) > 0;
        }
        auto form = catalog.getKey("/AcroForm");
        if (form.isDictionary()) {
            auto fields = form.getKey("/Fields");
            result.formFieldCount = fields.isArray() ? fields.getArrayNItems() : 1;
        }
        if (openActionRunsScript(catalog.getKey("/OpenAction"))) {
            result.javascriptDetected = true;
        }
    } catch (const std::exception&) {
        // A damaged catalog entry: what was counted so far stands.
    }
    return result;
}

} // namespace quillet
