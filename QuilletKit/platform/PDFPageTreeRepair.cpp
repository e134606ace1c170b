#include "platform/PDFPageTreeRepair.hpp"

#include <qpdf/QPDFPageObjectHelper.hh>

#include <cmath>
#include <qpdf/QPDFPageDocumentHelper.hh>

#include <algorithm>
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

} // namespace

bool rebuildPageTreeIfEmpty(QPDF& qpdf) {
    if (!QPDFPageDocumentHelper(qpdf).getAllPages().empty()) {
        return false;
    }
    const auto found = pageObjectsInFileOrder(qpdf);
    if (found.empty()) {
        return false;
    }
    auto tree = qpdf.makeIndirectObject(QPDFObjectHandle::newDictionary());
    auto kids = QPDFObjectHandle::newArray();
    for (const auto& entry : found) {
        auto page = entry.page;
        page.replaceKey("/Parent", tree);
        kids.appendItem(page);
    }
    tree.replaceKey("/Type", QPDFObjectHandle::newName("/Pages"));
    tree.replaceKey("/Kids", kids);
    tree.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(found.size())));
    qpdf.getRoot().replaceKey("/Pages", tree);
    qpdf.updateAllPagesCache();
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
