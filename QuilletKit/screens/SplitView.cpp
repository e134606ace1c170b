#include "screens/SplitView.hpp"

#include "app/LoadedFilesModel.hpp"
#include "screens/Components.hpp"

#include <QVBoxLayout>

namespace quillet {

SplitView::SplitView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    auto* list = new FileListView(this);
    list->setObjectName(QStringLiteral("files"));
    list->setModel(&context_.files);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(list);
}

} // namespace quillet
