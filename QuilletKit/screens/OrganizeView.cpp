#include "screens/OrganizeView.hpp"

#include "app/OrganizeController.hpp"
#include "platform/FileTypes.hpp"
#include "screens/Components.hpp"
#include "screens/OrganizePageGrid.hpp"
#include "screens/OrganizePageModel.hpp"
#include "screens/SectionView.hpp"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace quillet {
namespace {

QToolButton* toolButton(QAction* action, QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setDefaultAction(action);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAccessibleName(action->text());
    button->setObjectName(action->objectName() + QStringLiteral("Button"));
    button->setAutoRaise(false);
    return button;
}

} // namespace

OrganizeView::OrganizeView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context),
      controller_(new OrganizeController(context.app.history(), context.app.settings(), this)),
      pages_(new OrganizePageModel(context.app.renders(), this)),
      grid_(new OrganizePageGrid(*pages_, this)), stack_(new QStackedWidget(this)),
      empty_(new QLabel(tr("Drop a PDF to organize pages"), this)), status_(new QLabel(this)),
      result_(new QLabel(this)), zoom_(new QSlider(Qt::Horizontal, this)) {
    rotateLeft_ = addAction(QStringLiteral("rotateLeft"), tr("Rotate selection 90° left"),
                            tr("Rotate Left"), QStringLiteral("object-rotate-left"), {});
    rotateRight_ = addAction(QStringLiteral("rotateRight"), tr("Rotate selection 90° right"),
                             tr("Rotate Right"), QStringLiteral("object-rotate-right"), {});
    duplicate_ = addAction(QStringLiteral("duplicate"), tr("Duplicate selected pages"),
                           tr("Duplicate"), QStringLiteral("edit-copy"), {});
    delete_ = addAction(QStringLiteral("delete"), tr("Delete selected pages"), tr("Delete"),
                        QStringLiteral("edit-delete"), QKeySequence::Delete);
    insert_ = addAction(QStringLiteral("insert"), tr("Insert pages from PDFs"), tr("Insert…"),
                        QStringLiteral("list-add"), {});
    extract_ = addAction(QStringLiteral("extract"), tr("Extract selected pages to a new PDF"),
                         tr("Extract…"), QStringLiteral("document-export"), {});
    undo_ = addAction(QStringLiteral("undo"), tr("Undo"), tr("Undo"), QStringLiteral("edit-undo"),
                      QKeySequence::Undo);
    save_ = addAction(QStringLiteral("save"), tr("Save the organized PDF"), tr("Save"),
                      QStringLiteral("document-save"), QKeySequence::Save);
    selectAll_ = addAction(QStringLiteral("selectAll"), tr("Select all pages"), tr("Select All"),
                           {}, QKeySequence::SelectAll);

    connect(rotateLeft_, &QAction::triggered, this,
            [this] { controller_->rotate(selectedIDs(), -90); });
    connect(rotateRight_, &QAction::triggered, this,
            [this] { controller_->rotate(selectedIDs(), 90); });
    connect(duplicate_, &QAction::triggered, this,
            [this] { controller_->duplicate(selectedIDs()); });
    connect(delete_, &QAction::triggered, this, [this] { controller_->remove(selectedIDs()); });
    connect(insert_, &QAction::triggered, this, &OrganizeView::insertFiles);
    connect(extract_, &QAction::triggered, this, &OrganizeView::extract);
    connect(undo_, &QAction::triggered, controller_, &OrganizeController::undo);
    connect(save_, &QAction::triggered, this, [this] { controller_->save(false); });
    connect(selectAll_, &QAction::triggered, grid_, &QListView::selectAll);

    grid_->setObjectName(QStringLiteral("pages"));
    grid_->setAccessibleName(tr("Pages"));
    empty_->setObjectName(QStringLiteral("empty"));
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setWordWrap(true);
    empty_->setForegroundRole(QPalette::PlaceholderText);

    auto* content = new QWidget(this);
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(0, 0, 0, 0);
    contentLayout->setSpacing(8);
    contentLayout->addWidget(makeToolbar());
    contentLayout->addWidget(grid_, 1);
    contentLayout->addWidget(makeFooter());
    stack_->addWidget(empty_);
    stack_->addWidget(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(stack_);

    connect(controller_, &OrganizeController::stateChanged, this, &OrganizeView::stateChanged);
    connect(controller_, &OrganizeController::busyChanged, this, &OrganizeView::updateActions);
    connect(controller_, &OrganizeController::failed, this, &OrganizeView::showError);
    connect(controller_, &OrganizeController::signatureConfirmationNeeded, this,
            &OrganizeView::confirmSignedSave);
    connect(controller_, &OrganizeController::saved, this,
            [this](const QString& path) { showResult(tr("Saved: %1"), path); });
    connect(controller_, &OrganizeController::extracted, this,
            [this](const QString& path) { showResult(tr("Extracted: %1"), path); });
    connect(controller_, &OrganizeController::dragFileReady, this,
            [this](const QString& path) { grid_->startDrag(dragRow_, path); });
    connect(grid_, &OrganizePageGrid::dragRequested, this, [this](int row) {
        dragRow_ = row;
        controller_->extractForDrag(selectedIDs());
    });
    connect(pages_, &OrganizePageModel::moveRequested, this, [this](int from, int to) {
        if (!controller_->isBusy()) {
            controller_->move(from, to);
        }
    });
    connect(grid_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        updateStatus();
        updateActions();
    });
    connect(&context_.model(), &AppModel::filesChanged, this, [this] {
        filesPending_ = true;
        if (isVisible()) {
            loadFirstPDF();
        }
    });
    updateStatus();
    updateActions();
}

OrganizeView::~OrganizeView() = default;

QAction* OrganizeView::addAction(const QString& objectName, const QString& text,
                                 const QString& iconText, const QString& icon,
                                 const QKeySequence& shortcut) {
    auto* action = new QAction(QIcon::fromTheme(icon), text, this);
    action->setObjectName(objectName);
    action->setIconText(iconText);
    action->setToolTip(shortcut.isEmpty() ? text
                                          : QStringLiteral("%1 (%2)").arg(
                                                text, shortcut.toString(QKeySequence::NativeText)));
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WindowShortcut); // only while the screen is in sight
    QWidget::addAction(action);
    return action;
}

QWidget* OrganizeView::makeToolbar() {
    auto* bar = new QWidget(this);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    for (QAction* action : {rotateLeft_, rotateRight_, duplicate_, delete_}) {
        layout->addWidget(toolButton(action, bar));
    }
    layout->addSpacing(12);
    for (QAction* action : {insert_, extract_}) {
        layout->addWidget(toolButton(action, bar));
    }
    layout->addStretch();
    layout->addWidget(toolButton(undo_, bar));
    QToolButton* save = toolButton(save_, bar);
    layout->addWidget(save);
    return bar;
}

QWidget* OrganizeView::makeFooter() {
    auto* footer = new QWidget(this);
    auto* layout = new QHBoxLayout(footer);
    layout->setContentsMargins(0, 0, 0, 0);
    status_->setObjectName(QStringLiteral("status"));
    result_->setObjectName(QStringLiteral("result"));
    result_->setForegroundRole(QPalette::PlaceholderText);
    result_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    result_->setMinimumWidth(40);
    result_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* zoomLabel = new QLabel(tr("Thumbnail size"), footer);
    zoom_->setObjectName(QStringLiteral("zoom"));
    zoom_->setAccessibleName(tr("Thumbnail size"));
    zoom_->setRange(90, 320);
    zoom_->setSingleStep(10);
    zoom_->setPageStep(40);
    zoom_->setValue(pages_->thumbnailSide());
    zoom_->setFixedWidth(140);
    zoomLabel->setBuddy(zoom_);
    connect(zoom_, &QSlider::valueChanged, grid_, &OrganizePageGrid::setThumbnailSide);
    layout->addWidget(status_);
    layout->addSpacing(16);
    layout->addWidget(result_, 1);
    layout->addWidget(zoomLabel);
    layout->addWidget(zoom_);
    return footer;
}

void OrganizeView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (filesPending_) {
        loadFirstPDF();
    }
}

void OrganizeView::loadFirstPDF() {
    filesPending_ = false;
    QString first;
    for (const QString& path : context_.model().files()) {
        if (isPDF(path.toStdString())) {
            first = path;
            break;
        }
    }
    if (first.isEmpty() || first == requested_) {
        return;
    }
    if (unsaved_) {
        confirmDiscard(first);
        return;
    }
    requested_ = first;
    if (controller_->state().sourcePath.isEmpty()) {
        empty_->setText(tr("Opening “%1”…").arg(QFileInfo(first).fileName()));
    }
    controller_->load(first);
}

void OrganizeView::stateChanged() {
    const auto& state = controller_->state();
    // Changes count as unsaved from the first change of the pages until the next save.
    if (state.sourcePath != shownSource_ || state.savedPath != shownSaved_) {
        unsaved_ = false;
    } else if (state.cells != shownCells_) {
        unsaved_ = true;
    }
    shownSource_ = state.sourcePath;
    shownSaved_ = state.savedPath;
    shownCells_ = state.cells;
    const bool sameDocument = pages_->rowCount() > 0 && !state.sourcePath.isEmpty();
    const int scrolled = grid_->verticalScrollBar()->value();
    pages_->setCells(state.cells);
    if (sameDocument) {
        grid_->doItemsLayout();
        grid_->verticalScrollBar()->setValue(scrolled);
    }
    applySelection(state.selection);
    if (!controller_->isBusy()) {
        // A file that failed to open may be asked for again.
        requested_ = state.sourcePath;
        if (state.sourcePath.isEmpty()) {
            empty_->setText(tr("Drop a PDF to organize pages"));
        }
    }
    const bool loaded = !state.sourcePath.isEmpty();
    if (loaded && stack_->currentIndex() == 0) {
        stack_->setCurrentIndex(1);
        grid_->setFocus();
        // The pages need the room more than the drop zone does now.
        if (auto* section = qobject_cast<SectionView*>(parentWidget())) {
            section->dropZone().setCompact(true);
        }
    }
    updateStatus();
    updateActions();
}

void OrganizeView::applySelection(const std::set<PageID>& ids) {
    QItemSelection selection;
    const auto& cells = pages_->cells();
    int start = -1;
    for (int row = 0; row <= cells.size(); ++row) {
        const bool selected = row < cells.size() && ids.contains(cells[row].id);
        if (selected && start < 0) {
            start = row;
        } else if (!selected && start >= 0) {
            selection.select(pages_->index(start), pages_->index(row - 1));
            start = -1;
        }
    }
    grid_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!selection.isEmpty()) {
        grid_->selectionModel()->setCurrentIndex(selection.first().topLeft(),
                                                 QItemSelectionModel::NoUpdate);
    }
}

std::set<PageID> OrganizeView::selectedIDs() const {
    std::set<PageID> ids;
    const auto& cells = pages_->cells();
    for (const QModelIndex& index : grid_->selectionModel()->selectedIndexes()) {
        if (index.row() < cells.size()) {
            ids.insert(cells[index.row()].id);
        }
    }
    return ids;
}

void OrganizeView::updateActions() {
    const auto& state = controller_->state();
    const bool idle = !controller_->isBusy();
    const bool loaded = !state.sourcePath.isEmpty();
    const bool selected = grid_->selectionModel()->hasSelection();
    for (QAction* action : {rotateLeft_, rotateRight_, duplicate_, delete_, extract_}) {
        action->setEnabled(idle && loaded && selected);
    }
    insert_->setEnabled(idle && loaded);
    undo_->setEnabled(idle && state.canUndo);
    save_->setEnabled(idle && !state.cells.isEmpty());
    selectAll_->setEnabled(loaded);
    grid_->setDragEnabled(idle);
}

void OrganizeView::updateStatus() {
    const int pages = static_cast<int>(pages_->cells().size());
    const int selected = static_cast<int>(grid_->selectionModel()->selectedIndexes().size());
    status_->setText(tr("%n page(s)", nullptr, pages) + QStringLiteral(" · ") +
                     tr("%n selected", nullptr, selected));
}

void OrganizeView::insertFiles() {
    const QString folder = QFileInfo(controller_->state().sourcePath).absolutePath();
    const QStringList files =
        QFileDialog::getOpenFileNames(this, tr("Insert pages from PDFs (appended at the end)"),
                                      folder, tr("PDF documents (*.pdf *.PDF)"));
    if (!files.isEmpty()) {
        controller_->insertFiles(files);
    }
}

void OrganizeView::extract() {
    const auto& state = controller_->state();
    const QString suggested =
        QFileInfo(state.sourcePath).absoluteDir().filePath(state.suggestedExtractName);
    QString destination = QFileDialog::getSaveFileName(
        this, tr("Extract Selected Pages"), suggested, tr("PDF documents (*.pdf *.PDF)"));
    if (destination.isEmpty()) {
        return;
    }
    if (QFileInfo(destination).suffix().compare(QStringLiteral("pdf"), Qt::CaseInsensitive) != 0) {
        destination += QStringLiteral(".pdf");
    }
    controller_->extract(selectedIDs(), destination);
}

void OrganizeView::confirmSignedSave() {
    auto* box =
        new QMessageBox(QMessageBox::Warning, tr("This PDF may contain digital signatures"),
                        tr("This PDF may contain digital signatures"), QMessageBox::NoButton, this);
    box->setObjectName(QStringLiteral("signatureWarning"));
    box->setInformativeText(tr("Flattening or reorganizing signed documents can invalidate their "
                               "signatures. Continue?"));
    QPushButton* saveAnyway = box->addButton(tr("Save Anyway"), QMessageBox::AcceptRole);
    saveAnyway->setObjectName(QStringLiteral("saveAnyway"));
    QPushButton* cancel = box->addButton(tr("Cancel"), QMessageBox::RejectRole);
    cancel->setObjectName(QStringLiteral("cancel"));
    box->setDefaultButton(cancel);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    connect(box, &QMessageBox::finished, this, [this, box, saveAnyway] {
        if (box->clickedButton() == saveAnyway) {
            controller_->save(true);
        } else {
            controller_->dismissSignatureWarning();
        }
    });
    box->open();
}

void OrganizeView::confirmDiscard(const QString& next) {
    requested_ = next; // asked once for this file, whatever the answer
    const QString current = QFileInfo(controller_->state().sourcePath).fileName();
    auto* box = new QMessageBox(QMessageBox::Question, tr("Organize"),
                                tr("Discard the changes to “%1”?").arg(current),
                                QMessageBox::NoButton, this);
    box->setObjectName(QStringLiteral("discardChanges"));
    box->setInformativeText(
        tr("“%1” was loaded. Opening it here replaces the pages you changed and did not save.")
            .arg(QFileInfo(next).fileName()));
    QPushButton* discard = box->addButton(tr("Discard Changes"), QMessageBox::DestructiveRole);
    discard->setObjectName(QStringLiteral("discard"));
    QPushButton* keep = box->addButton(tr("Keep Editing"), QMessageBox::RejectRole);
    box->setDefaultButton(keep);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    connect(box, &QMessageBox::finished, this, [this, box, discard, next] {
        if (box->clickedButton() == discard) {
            unsaved_ = false;
            controller_->load(next);
        }
    });
    box->open();
}

void OrganizeView::showError(const QString& message) {
    auto* box =
        new QMessageBox(QMessageBox::Warning, tr("Organize"), message, QMessageBox::Ok, this);
    box->setObjectName(QStringLiteral("organizeError"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->open();
}

void OrganizeView::showResult(const QString& text, const QString& path) {
    const QString line = text.arg(QDir::toNativeSeparators(path));
    result_->setText(
        result_->fontMetrics().elidedText(line, Qt::ElideMiddle, std::max(200, result_->width())));
    result_->setToolTip(line);
    result_->setAccessibleName(line);
}

} // namespace quillet
