#include "platform/PDFPageTreeRepair.hpp"

#include <qpdf/QPDFPageObjectHelper.hh>

#include <cmath>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace quillet::detail {

namespace {

struct FoundPage {
    // Objects stored directly sort by file offset; those inside object streams after them, by
    // stream and position, which is the order they were written in.
    std::tuple<int, qpdf_offset_t, int> position;
    QPDFObjectHandle page;
};

std::vector<FoundPage> pageObjectsInFileOrder(QPDF& qpdf) {
    std::vector<FoundPage> found;
    for (const auto& [id, entry] : qpdf.getXRefTable()) {
        auto object = qpdf.getObject(id);
        if (!object.isDictionary() || !object.getKey("/Type").isNameAndEquals("/Page")) {
            continue;
        }
        const auto position =
            entry.getType() == 1
                ? std::make_tuple(0, entry.getOffset(), 0)
                : std::make_tuple(1, static_cast<qpdf_offset_t>(entry.getObjStreamNumber()),
                                  entry.getObjStreamIndex());
        found.push_back({position, object});
    }
    std::sort(found.begin(), found.end(),
              [](const auto& a, const auto& b) { return a.position < b.position; });
    return found;
}

void setFlatPageTree(QPDF& qpdf, std::vector<QPDFObjectHandle>& pages) {
    auto tree = qpdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    auto kids = QPDFObjectHandle::newArray();
    for (auto& page : pages) {
        page.replaceKey("/Parent", tree);
        kids.appendItem(page);
    }
    tree.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
    tree.replaceKey("/Kids", kids);
    tree.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(pages.size())));
    qpdf.getRoot().replaceKey("/Pages", tree);
    qpdf.updateAllPagesCache();
}

constexpr std::array<const char*, 4> inheritedKeys{"/MediaBox", "/CropBox", "/Resources",
                                                   "/Rotate"};

void collectPages(QPDFObjectHandle node, std::map<std::string, QPDFObjectHandle> inherited,
                  std::set<QPDFObjGen>& seen, std::vector<QPDFObjectHandle>& pages, int depth) {
    if (!node.isDictionary() || depth > 256 ||
        (node.isIndirect() && !seen.insert(node.getObjGen()).second)) {
        return;
    }
    auto kids = node.getKey("/Kids");
    const bool isPage = !kids.isArray() || node.getKey("/Type").isNameAndEquals("/Page");
    if (isPage) {
        for (const auto& [key, value] : inherited) {
            if (!node.hasKey(key)) {
                node.replaceKey(key, value);
            }
        }
        pages.push_back(node);
        return;
    }
    for (const char* key : inheritedKeys) {
        if (node.hasKey(key)) {
            inherited[key] = node.getKey(key);
        }
    }
    for (int i = 0; i < kids.getArrayNItems(); ++i) {
        collectPages(kids.getArrayItem(i), inherited, seen, pages, depth + 1);
    }
}

} // namespace

bool flattenLoopingPageTree(QPDF& qpdf) {
    try {
        (void)qpdf.getAllPages();
        return false;
    } catch (const std::exception&) {
        std::set<QPDFObjGen> seen;
        std::vector<QPDFObjectHandle> pages;
        collectPages(qpdf.getRoot().getKey("/Pages"), {}, seen, pages, 0);
        if (pages.empty()) {
            throw; // nothing to rebuild from: qpdf's reason stands
        }
        setFlatPageTree(qpdf, pages);
        return true;
    }
}

bool rebuildPageTreeIfEmpty(QPDF& qpdf) {
    if (!QPDFPageDocumentHelper(qpdf).getAllPages().empty()) {
        return false;
    }
    const auto found = pageObjectsInFileOrder(qpdf);
    if (found.empty()) {
        return false;
    }
    std::vector<QPDFObjectHandle> pages;
    for (const auto& entry : found) {
        pages.push_back(entry.page);
    }
    setFlatPageTree(qpdf, pages);
    return true;
}

int repairDegenerateMediaBoxes(QPDF& qpdf) {
    int repaired = 0;
    for (auto page : qpdf.getAllPages()) {
        auto box = QPDFPageObjectHelper(page).getAttribute("/MediaBox", false);
        if (box.isRectangle()) {
            const auto rect = box.getArrayAsRectangle();
            if (std::abs(rect.urx - rect.llx) > 0 && std::abs(rect.ury - rect.lly) > 0) {
                continue;
            }
        }
        page.replaceKey("/MediaBox", QPDFObjectHandle::newFromRectangle({0, 0, 612, 792}));
        ++repaired;
    }
    return repaired;
}

} // namespace quillet::detail
