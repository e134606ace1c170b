#include "screens/RedactPanel.hpp"

#include "engines/PDFRedactionEngine.hpp"
#include "engines/RedactionFinder.hpp"
#include "platform/MuPDFEditor.hpp"
#include "screens/BeforeAfterView.hpp"
#include "screens/RedactPageView.hpp"
#include "screens/InBackground.hpp"
#include "screens/ScreenParts.hpp"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QThreadPool>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace quillet {

RedactPanel::RedactPanel(PageRenderService& renders, QWidget* parent)
    : QWidget(parent), renders_(renders) {
    page_ = new RedactPageView(renders_, this);
    page_->setObjectName(QStringLiteral("redactPage"));
    file_ = new QLabel(this);
    file_->setWordWrap(true);
    previous_ = new QPushButton(tr("Previous"), this);
    next_ = new QPushButton(tr("Next"), this);
    pageLabel_ = new QLabel(this);
    auto* undo = new QPushButton(tr("Undo"), this);
    undo->setShortcut(QKeySequence::Undo);
    auto* clear = new QPushButton(tr("Remove boxes"), this);
    auto* pager = new QHBoxLayout;
    pager->addWidget(previous_);
    pager->addWidget(pageLabel_);
    pager->addWidget(next_);
    pager->addStretch(1);
    auto* editing = new QHBoxLayout;
    editing->addWidget(undo);
    editing->addWidget(clear);
    editing->addStretch(1);

    search_ = new QLineEdit(this);
    search_->setObjectName(QStringLiteral("redactSearch"));
    search_->setPlaceholderText(tr("Words or an expression to remove"));
    search_->setAccessibleName(tr("Search"));
    search_->setClearButtonEnabled(true);
    matchCase_ = new QCheckBox(tr("Match case"), this);
    regex_ = new QCheckBox(tr("Regular expression"), this);
    find_ = new QPushButton(tr("Find"), this);
    find_->setObjectName(QStringLiteral("redactFind"));
    auto* searchRow = new QHBoxLayout;
    searchRow->addWidget(matchCase_);
    searchRow->addWidget(regex_);
    searchRow->addStretch(1);
    searchRow->addWidget(find_);

    auto* presetRow = new QGridLayout;
    int presetAt = 0;
    presets_ = redactionPresetBoxes(this, QStringLiteral("redactPreset-"));
    for (const auto& [preset, box] : presets_) {
        presetRow->addWidget(box, presetAt / 3, presetAt % 3);
        ++presetAt;
        connect(box, &QCheckBox::toggled, this, &RedactPanel::find);
    }
    presetRow->setColumnStretch(3, 1);

    hitsList_ = new QTreeWidget(this);
    hitsList_->setObjectName(QStringLiteral("redactMatches"));
    hitsList_->setAccessibleName(tr("Matches to redact"));
    hitsList_->setRootIsDecorated(false);
    hitsList_->setHeaderLabels({tr("Page"), tr("Text"), tr("Found by")});
    hitsList_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    hitsList_->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    status_ = new QLabel(this);
    status_->setWordWrap(true);
    status_->setForegroundRole(QPalette::PlaceholderText);
    compare_ = new QPushButton(tr("Before and after"), this);
    compare_->setObjectName(QStringLiteral("redactCompare"));
    compare_->setVisible(false);

    auto* side = new QVBoxLayout;
    side->addWidget(search_);
    side->addLayout(searchRow);
    side->addLayout(presetRow);
    side->addWidget(hitsList_, 1);
    side->addWidget(status_);
    side->addWidget(compare_, 0, Qt::AlignLeft);
    auto* left = new QVBoxLayout;
    left->addWidget(file_);
    left->addWidget(page_, 1);
    left->addLayout(pager);
    left->addLayout(editing);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(left, 1);
    layout->addLayout(side, 1);

    connect(previous_, &QPushButton::clicked, this, [this] { showPage(pageIndex_ - 1); });
    connect(next_, &QPushButton::clicked, this, [this] { showPage(pageIndex_ + 1); });
    connect(undo, &QPushButton::clicked, page_, &RedactPageView::undo);
    connect(clear, &QPushButton::clicked, page_, &RedactPageView::clearDrawn);
    connect(page_, &RedactPageView::drawnChanged, this, &RedactPanel::changed);
    connect(find_, &QPushButton::clicked, this, &RedactPanel::find);
    connect(compare_, &QPushButton::clicked, this, [this] {
        auto* dialog = new QDialog(this);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setWindowTitle(tr("Before and after"));
        auto* view = new BeforeAfterView(renders_, dialog);
        auto* layout = new QVBoxLayout(dialog);
        layout->addWidget(view);
        dialog->resize(900, 700);
        dialog->show();
        view->compare(original_, result_, static_cast<int>(pageSizes_.size()));
    });
    connect(search_, &QLineEdit::returnPressed, this, &RedactPanel::find);
    // The list always shows what the job would remove: new flags, new search.
    for (QCheckBox* flag : {matchCase_, regex_}) {
        connect(flag, &QCheckBox::toggled, this, [this] {
            if (!search_->text().trimmed().isEmpty()) {
                find();
            }
        });
    }
    connect(search_, &QLineEdit::textChanged, this, [this] {
        ++generation_; // a search under way no longer answers what is typed
        hits_.clear();
        hitsList_->clear();
        refreshPageBoxes();
        emit changed();
    });
    connect(hitsList_, &QTreeWidget::itemChanged, this, [this] {
        refreshPageBoxes();
        emit changed();
    });
    connect(hitsList_, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        showPage(item->data(0, Qt::UserRole).toInt());
    });
    setFiles({});
}

void RedactPanel::setFiles(const QStringList& pdfs) {
    const QString path = pdfs.isEmpty() ? QString() : pdfs.front();
    if (path == path_) {
        return;
    }
    path_ = path;
    ++fileGeneration_;
    ++generation_;
    pageSizes_.clear();
    hits_.clear();
    hitsList_->clear();
    file_->setText(path.isEmpty() ? tr("No PDF loaded.")
                                  : tr("Boxes are drawn on %1.").arg(QFileInfo(path).fileName()));
    page_->showPage(QString(), -1, {});
    showPage(0);
    if (path.isEmpty()) {
        return;
    }
    if (!offered_.isEmpty()) {
        page_->showPage(path, 0, {}); // the boxes belong to this file
        page_->setDrawn(offered_);
        offered_.clear();
    }
    status_->setText(tr("Reading the pages…"));
    const int generation = fileGeneration_;
    inBackground(
        this,
        [path] {
            QList<QSizeF> sizes;
            try {
                auto editor = MuPDFEditor::open(path.toStdString());
                for (int i = 0; i < editor.pageCount(); ++i) {
                    const auto box = editor.pageBox(i);
                    sizes.append(QSizeF(box.x1 - box.x0, box.y1 - box.y0));
                }
            } catch (const std::exception&) {
                // A file that cannot be read shows no page; its job says why.
            }
            return sizes;
        },
        [this, generation](QList<QSizeF> sizes) {
            if (generation != fileGeneration_) {
                return;
            }
            pageSizes_ = std::move(sizes);
            status_->setText(pageSizes_.isEmpty() ? tr("This PDF cannot be shown.") : QString());
            showPage(0);
        });
}

void RedactPanel::showPage(int index) {
    const int count = static_cast<int>(pageSizes_.size());
    pageIndex_ = std::clamp(index, 0, std::max(0, count - 1));
    previous_->setEnabled(pageIndex_ > 0);
    next_->setEnabled(pageIndex_ + 1 < count);
    pageLabel_->setText(count == 0 ? QString()
                                   : tr("Page %1 of %2").arg(pageIndex_ + 1).arg(count));
    if (count > 0) {
        page_->showPage(path_, pageIndex_, pageSizes_[pageIndex_]);
    }
    refreshPageBoxes();
}

OperationParameters::Redact RedactPanel::searched() const {
    OperationParameters::Redact redact;
    if (const QString text = search_->text().trimmed(); !text.isEmpty()) {
        redact.patterns.push_back(
            {text.toStdString(), regex_->isChecked(), matchCase_->isChecked()});
    }
    for (const auto& [preset, box] : presets_) {
        if (box->isChecked()) {
            redact.presets.push_back(preset.toStdString());
        }
    }
    return redact;
}

void RedactPanel::find() {
    ++generation_;
    hits_.clear();
    hitsList_->clear();
    refreshPageBoxes();
    const auto redact = searched();
    if (path_.isEmpty() || (redact.patterns.empty() && redact.presets.empty())) {
        status_->setText(QString());
        emit changed();
        return;
    }
    RedactionRequest request;
    for (const auto& pattern : redact.patterns) {
        request.patterns.push_back({pattern.text, pattern.regex, pattern.matchCase});
    }
    request.presets = redact.presets;
    status_->setText(tr("Searching…"));
    const int generation = generation_;
    const QString path = path_;
    inBackground(
        this,
        [path, request] {
            std::pair<std::vector<Hit>, QString> result;
            try {
                for (auto& found : PDFRedactionEngine::find(path.toStdString(), request)) {
                    Hit hit{found.page - 1, QString::fromStdString(found.match.label),
                            QString::fromStdString(found.match.text), {}};
                    for (const auto& box : found.match.boxes) {
                        hit.boxes.append(QRectF(box.x0, box.y0, box.x1 - box.x0, box.y1 - box.y0));
                    }
                    result.first.push_back(std::move(hit));
                }
            } catch (const std::exception& error) {
                result.second = QString::fromUtf8(error.what());
            }
            return result;
        },
        [this, generation](std::pair<std::vector<Hit>, QString> result) {
            if (generation != generation_) {
                return;
            }
            showHits(std::move(result.first));
            if (!result.second.isEmpty()) {
                status_->setText(result.second);
            }
        });
}

void RedactPanel::showHits(std::vector<Hit> hits) {
    hits_ = std::move(hits);
    const QSignalBlocker quiet(hitsList_);
    hitsList_->clear();
    for (const Hit& hit : hits_) {
        auto* item = new QTreeWidgetItem(hitsList_);
        item->setText(0, QString::number(hit.page + 1));
        item->setText(1, hit.text);
        item->setText(2, hit.label);
        item->setData(0, Qt::UserRole, hit.page);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(0, Qt::Checked);
    }
    status_->setText(hits_.empty() ? tr("Nothing found.")
                                   : tr("%n match(es): untick one to keep it.", nullptr,
                                        static_cast<int>(hits_.size())));
    refreshPageBoxes();
    emit changed();
}

void RedactPanel::refreshPageBoxes() {
    QList<QRectF> boxes;
    for (std::size_t i = 0; i < hits_.size(); ++i) {
        const auto* item = hitsList_->topLevelItem(static_cast<int>(i));
        if (hits_[i].page == pageIndex_ && item && item->checkState(0) == Qt::Checked) {
            boxes.append(hits_[i].boxes);
        }
    }
    page_->setFound(boxes);
}

bool RedactPanel::everyHitTicked() const {
    for (int i = 0; i < hitsList_->topLevelItemCount(); ++i) {
        if (hitsList_->topLevelItem(i)->checkState(0) != Qt::Checked) {
            return false;
        }
    }
    return true;
}

std::vector<std::pair<QString, OperationParameters::Redact>>
RedactPanel::jobs(const QStringList& pdfs) const {
    std::vector<std::pair<QString, OperationParameters::Redact>> jobs;
    const auto redact = searched();
    for (const QString& pdf : pdfs) {
        OperationParameters::Redact job;
        if (pdf == path_) {
            for (auto it = page_->drawn().begin(); it != page_->drawn().end(); ++it) {
                for (const QRectF& box : it.value()) {
                    job.areas.push_back({it.key() + 1, {box.x(), box.y(), box.width(), box.height()}});
                }
            }
            if (everyHitTicked()) {
                job.patterns = redact.patterns;
                job.presets = redact.presets;
            } else {
                for (int i = 0; i < hitsList_->topLevelItemCount(); ++i) {
                    if (hitsList_->topLevelItem(i)->checkState(0) != Qt::Checked) {
                        continue;
                    }
                    const Hit& hit = hits_[static_cast<std::size_t>(i)];
                    for (const QRectF& box : hit.boxes) {
                        job.areas.push_back(
                            {hit.page + 1, {box.x(), box.y(), box.width(), box.height()}});
                    }
                }
            }
        } else {
            job.patterns = redact.patterns;
            job.presets = redact.presets;
        }
        if (!job.areas.empty() || !job.patterns.empty() || !job.presets.empty()) {
            jobs.emplace_back(pdf, std::move(job));
        }
    }
    return jobs;
}

QString RedactPanel::problem(bool running) const {
    if (page_->drawn().isEmpty() && searched().patterns.empty() && searched().presets.empty()) {
        return running ? tr("Draw a box on the page, or search for words or a preset.") : QString();
    }
    try {
        std::vector<RedactionPattern> patterns;
        for (const auto& pattern : searched().patterns) {
            patterns.push_back({pattern.text, pattern.regex, pattern.matchCase});
        }
        (void)RedactionFinder(patterns, {}); // an expression that does not compile says so
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

void RedactPanel::offer(const OperationParameters::Redact& redaction) {
    offered_.clear();
    for (const auto& area : redaction.areas) {
        if (area.rect.size() == 4) {
            offered_[static_cast<int>(area.page) - 1].append(
                QRectF(area.rect[0], area.rect[1], area.rect[2], area.rect[3]));
        }
    }
    for (const auto& [preset, box] : presets_) {
        const QSignalBlocker quiet(box);
        box->setChecked(std::find(redaction.presets.begin(), redaction.presets.end(),
                                  preset.toStdString()) != redaction.presets.end());
    }
    if (!path_.isEmpty() && !offered_.isEmpty()) {
        page_->showPage(path_, pageIndex_, pageSizes_.value(pageIndex_)); // the boxes' file
        page_->setDrawn(offered_);
        offered_.clear();
    }
    if (!redaction.patterns.empty()) {
        status_->setText(tr("Type the words again: the history does not keep them."));
        search_->setFocus();
    }
    emit changed();
}

void RedactPanel::watch(const std::string& id) {
    watched_ = id;
    original_ = path_;
    compare_->setVisible(false);
}

void RedactPanel::queueChanged(const std::vector<TaskRecord>& records) {
    for (const TaskRecord& record : records) {
        if (watched_.empty() || record.id != watched_) {
            continue;
        }
        if (record.state == TaskState::completed && !record.outputURLs.empty()) {
            result_ = ScreenFiles::localPath(record.outputURLs.front());
            watched_.clear();
            compare_->setVisible(true);
        } else if (record.state == TaskState::failed || record.state == TaskState::cancelled) {
            watched_.clear();
        }
        return;
    }
}

void RedactPanel::clearAfterQueued() {
    page_->clearDrawn();
    search_->clear();
    for (const auto& [preset, box] : presets_) {
        const QSignalBlocker quiet(box);
        box->setChecked(false);
    }
    hits_.clear();
    hitsList_->clear();
    refreshPageBoxes();
}

} // namespace quillet
