#include "screens/MainWindow.hpp"

#include "app/LoadedFilesModel.hpp"
#include "app/QuilletApp.hpp"
#include "screens/Components.hpp"
#include "screens/QueuePanel.hpp"
#include "screens/ResumeBanner.hpp"
#include "screens/SectionBodies.hpp"
#include "screens/SectionView.hpp"
#include "screens/SettingsWindow.hpp"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QSplitter>
#include <QStackedWidget>
#include <QSystemTrayIcon>
#include <QVBoxLayout>

namespace quillet {
namespace {

QList<QUrl> showOpenPanel(QWidget* parent, const AppModel::OpenPanelRequest& request) {
    const QString filter = MainWindow::tr("PDFs and images") +
                           QStringLiteral(" (*.pdf *.PDF *.png *.PNG *.jpg *.JPG *.jpeg *.JPEG "
                                          "*.tif *.TIF *.tiff *.TIFF *.heic *.HEIC *.heif *.HEIF "
                                          "*.avif *.AVIF *.webp *.WEBP *.gif *.GIF)");
    // Folders are chosen with the batch screen's own "Choose a folder…".
    return QFileDialog::getOpenFileUrls(parent, request.title, QUrl(), filter);
}

// The sections, one shown at a time. A plain stacked widget answers how tall it must be for a
// width by laying out the wrapped text of every section, shown or not, on every pass of the
// window's layout; this one asks the section on screen only.
class SectionStack : public QStackedWidget {
  public:
    using QStackedWidget::QStackedWidget;

    bool hasHeightForWidth() const override {
        const QWidget* shown = currentWidget();
        return shown != nullptr && shown->hasHeightForWidth();
    }

    int heightForWidth(int width) const override {
        const QWidget* shown = currentWidget();
        return shown != nullptr ? shown->heightForWidth(width) : -1;
    }
};

} // namespace

MainWindow::MainWindow(QuilletApp& app, std::function<void()> relaunch, QWidget* parent)
    : QMainWindow(parent), app_(app), relaunch_([this, relaunch = std::move(relaunch)] {
          quitting_ = true;
          if (relaunch) {
              relaunch();
          }
      }),
      files_(new LoadedFilesModel(app.model(), &app.renders(), this)) {
    setWindowTitle(QStringLiteral("Quillet"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/org.quillet.Quillet.svg")));
    setAcceptDrops(true);
    setMinimumSize(900, 600);
    resize(1220, 780);

    AppModel& model = app_.model();
    model.openPanel = [this](const AppModel::OpenPanelRequest& request) {
        return showOpenPanel(this, request);
    };
    model.openSettingsHandler = [this] { openSettings(); };

    stack_ = new SectionStack(this);
    const ScreenContext context{app_, *files_};
    for (int i = 0; i < AppModel::sectionCount; ++i) {
        const auto section = static_cast<AppModel::Section>(i);
        auto* view = new SectionView(model, section);
        view->setBody(makeSectionBody(section, context));
        stack_->addWidget(view);
    }
    queuePanel_ = new QueuePanel(app_.queue(), this);
    queuePanel_->setMinimumWidth(300);
    banner_ = new ResumeBanner(app_.queue(), this);

    auto* split = new QSplitter(this);
    split->addWidget(buildSidebar());
    split->addWidget(stack_);
    split->addWidget(queuePanel_);
    split->setStretchFactor(0, 0);
    split->setStretchFactor(1, 1);
    split->setStretchFactor(2, 0);
    split->setCollapsible(1, false);
    split->setSizes({200, 660, 360});

    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(banner_);
    layout->addWidget(split, 1);
    setCentralWidget(central);
    buildMenus();

    connect(&model, &AppModel::sectionChanged, this, &MainWindow::showSection);
    showSection();
}

MainWindow::~MainWindow() {
    app_.model().openPanel = nullptr;
    app_.model().openSettingsHandler = nullptr;
}

SectionView& MainWindow::section(int index) const {
    return *static_cast<SectionView*>(stack_->widget(index));
}

void MainWindow::buildMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* open = file->addAction(tr("Open PDFs or images"));
    open->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    connect(open, &QAction::triggered, this, [this] { app_.model().chooseFiles(); });
    QAction* settings = file->addAction(tr("Settings"));
    settings->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    settings->setMenuRole(QAction::PreferencesRole);
    connect(settings, &QAction::triggered, this, [this] {
        if (app_.model().openSettingsHandler) {
            app_.model().openSettingsHandler();
        }
    });
    file->addSeparator();
    QAction* quit = file->addAction(tr("Quit"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setMenuRole(QAction::QuitRole);
    connect(quit, &QAction::triggered, this, &MainWindow::requestQuit);
}

void MainWindow::requestQuit() {
    if (app_.queue().isBusy() &&
        QMessageBox::question(isVisible() ? this : nullptr, tr("Quit"),
                              tr("A job is still running. Quitting stops it; jobs that wait "
                                 "are offered again at the next start.")) != QMessageBox::Yes) {
        return;
    }
    quitNow();
}

void MainWindow::quitNow() {
    // Quitting closes every window first; this one must then close rather than hide.
    quitting_ = true;
    QApplication::quit();
}

QWidget* MainWindow::buildSidebar() {
    sidebar_ = new QListWidget(this);
    sidebar_->setObjectName(QStringLiteral("sidebar"));
    sidebar_->setIconSize(QSize(22, 22));
    sidebar_->setSpacing(2);
    sidebar_->setFrameShape(QFrame::NoFrame);
    sidebar_->setMinimumWidth(170);
    QFont font = sidebar_->font();
    font.setPointSizeF(font.pointSizeF() * 1.08);
    sidebar_->setFont(font);
    for (int i = 0; i < AppModel::sectionCount; ++i) {
        const auto section = static_cast<AppModel::Section>(i);
        auto* item =
            new QListWidgetItem(SectionView::icon(section), SectionView::title(section), sidebar_);
        item->setSizeHint(QSize(0, 40));
    }
    connect(sidebar_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0) {
            app_.model().setSection(static_cast<AppModel::Section>(row));
        }
    });
    return sidebar_;
}

void MainWindow::showSection() {
    const int index = static_cast<int>(app_.model().section());
    stack_->setCurrentIndex(index);
    if (sidebar_->currentRow() != index) {
        sidebar_->setCurrentRow(index);
    }
}

QList<QUrl> MainWindow::chooseFiles() {
    return showOpenPanel(this, {tr("Choose PDFs or images"), false});
}

void MainWindow::openSettings() {
    if (settings_ == nullptr) {
        settings_ = new SettingsWindow(app_, relaunch_, this);
    }
    settings_->show();
    settings_->raise();
    settings_->activateWindow();
}

void MainWindow::bringToFront() {
    app_.windowShown();
    if (tray_ != nullptr) {
        tray_->hide();
    }
    if (isMinimized()) {
        showNormal();
    } else {
        show();
    }
    raise();
    activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (settings_ != nullptr) {
        settings_->close();
    }
    if (quitting_ || app_.lastWindowClosed()) {
        event->accept();
        quitNow();
        return;
    }
    // Jobs still run or wait: the window goes, the work goes on.
    event->ignore();
    hide();
    showTrayIcon();
}

void MainWindow::showTrayIcon() {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        return;
    }
    if (tray_ == nullptr) {
        tray_ = new QSystemTrayIcon(windowIcon(), this);
        auto* menu = new QMenu(this);
        connect(menu->addAction(tr("Show Quillet")), &QAction::triggered, this,
                &MainWindow::bringToFront);
        connect(menu->addAction(tr("Quit")), &QAction::triggered, this, &MainWindow::requestQuit);
        tray_->setContextMenu(menu);
        connect(tray_, &QSystemTrayIcon::activated, this,
                [this](QSystemTrayIcon::ActivationReason reason) {
                    if (reason == QSystemTrayIcon::Trigger ||
                        reason == QSystemTrayIcon::DoubleClick) {
                        bringToFront();
                    }
                });
    }
    tray_->setToolTip(tr("Quillet is finishing your jobs"));
    tray_->show();
    tray_->showMessage(QStringLiteral("Quillet"),
                       tr("Your jobs go on in the background. Quillet quits when they are done."),
                       QSystemTrayIcon::Information, 5000);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (!DropZone::localFiles(event->mimeData()).isEmpty()) {
        event->acceptProposedAction();
    }
}

void MainWindow::dropEvent(QDropEvent* event) {
    const auto urls = DropZone::localFiles(event->mimeData());
    if (!urls.isEmpty()) {
        event->acceptProposedAction();
        app_.model().acceptDropped(urls);
    }
}

} // namespace quillet
