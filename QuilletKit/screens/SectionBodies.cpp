#include "screens/SectionBodies.hpp"

#include "screens/BatchView.hpp"
#include "screens/CompressView.hpp"
#include "screens/ConvertView.hpp"
#include "screens/HistoryView.hpp"
#include "screens/HomeView.hpp"
#include "screens/MergeView.hpp"
#include "screens/OrganizeView.hpp"
#include "screens/PrivacyView.hpp"
#include "screens/SplitView.hpp"
#include "screens/StampView.hpp"

namespace quillet {

QWidget* makeSectionBody(AppModel::Section section, const ScreenContext& context) {
    using Section = AppModel::Section;
    switch (section) {
    case Section::home: return new HomeView(context);
    case Section::compress: return new CompressView(context);
    case Section::merge: return new MergeView(context);
    case Section::split: return new SplitView(context);
    case Section::organize: return new OrganizeView(context);
    case Section::stamp: return new StampView(context);
    case Section::convert: return new ConvertView(context);
    case Section::privacy: return new PrivacyView(context);
    case Section::batch: return new BatchView(context);
    case Section::history: return new HistoryView(context);
    }
    return nullptr;
}

} // namespace quillet
