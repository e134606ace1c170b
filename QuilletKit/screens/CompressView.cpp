#include "screens/CompressView.hpp"

#include "app/LoadedFilesModel.hpp"
#include "screens/Components.hpp"

#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace quillet {
namespace {

bool isPDF(const QString& path) {
    return QFileInfo(path).suffix().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) == 0;
}

} // namespace

CompressView::CompressView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    auto* list = new FileListView(this);
    list->setObjectName(QStringLiteral("files"));
    list->setModel(&context_.files);

    tier_ = new QComboBox(this);
    tier_->setObjectName(QStringLiteral("tier"));
    const std::pair<CompressionQualityTier, QString> tiers[] = {
        {CompressionQualityTier::highQuality, tr("High Quality")},
        {CompressionQualityTier::balanced, tr("Balanced")},
        {CompressionQualityTier::smallest, tr("Smallest")},
        {CompressionQualityTier::lossless, tr("Lossless Optimize")},
    };
    for (const auto& [tier, label] : tiers) {
        tier_->addItem(label, static_cast<int>(tier));
    }
    tier_->setCurrentIndex(1);
    run_ = new QPushButton(tr("Compress"), this);
    run_->setObjectName(QStringLiteral("run"));
    run_->setDefault(true);
    connect(run_, &QPushButton::clicked, this, [this] {
        const auto tier = static_cast<CompressionQualityTier>(tier_->currentData().toInt());
        QStringList pdfs;
        for (const QString& path : context_.model().files()) {
            if (isPDF(path)) {
                pdfs << path;
            }
        }
        context_.model().run(PDFOperationKind::compress, OperationParameters::Compress{tier},
                             pdfs);
    });
    connect(&context_.model(), &AppModel::filesChanged, this, &CompressView::updateActions);

    auto* bar = new QHBoxLayout;
    bar->addWidget(new QLabel(tr("Quality:"), this));
    bar->addWidget(tier_);
    bar->addStretch();
    bar->addWidget(run_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(list, 1);
    layout->addLayout(bar);
    updateActions();
}

void CompressView::updateActions() {
    const auto& files = context_.model().files();
    run_->setEnabled(std::any_of(files.begin(), files.end(), isPDF));
}

} // namespace quillet
