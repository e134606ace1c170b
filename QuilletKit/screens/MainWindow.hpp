// The main window: the sidebar of the nine sections, the section shown, the queue panel beside
// it, and the resume banner above while an interrupted batch waits.
//
// Closing it quits the application when no job runs or waits. Otherwise the window hides and
// the work goes on, shown by a tray icon where the desktop has one; launching the application
// again (or the tray icon) brings the window back, and the application quits by itself when the
// queue is done.
#pragma once

#include <QMainWindow>

#include <functional>

class QListWidget;
class QStackedWidget;
class QSystemTrayIcon;

namespace quillet {

class LoadedFilesModel;
class QueuePanel;
class QuilletApp;
class ResumeBanner;
class SectionView;
class SettingsWindow;

class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    /// `relaunch` is what the settings window's "Relaunch" runs.
    MainWindow(QuilletApp& app, std::function<void()> relaunch, QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Shows the window (again) in front of the others.
    void bringToFront();
    void openSettings();
    /// The open dialog for PDFs and images; the chosen files, none when cancelled.
    QList<QUrl> chooseFiles();
    /// Quits, asking first while a job runs or waits (quitting stops it).
    void requestQuit();
    /// Quits without asking: the window closes instead of hiding.
    void quitNow();

    SectionView& section(int index) const;
    QueuePanel& queuePanel() const { return *queuePanel_; }
    ResumeBanner& resumeBanner() const { return *banner_; }
    SettingsWindow* settingsWindow() const { return settings_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void buildMenus();
    QWidget* buildSidebar();
    void showSection();
    void showTrayIcon();

    QuilletApp& app_;
    std::function<void()> relaunch_;
    LoadedFilesModel* files_;
    QListWidget* sidebar_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    QueuePanel* queuePanel_ = nullptr;
    ResumeBanner* banner_ = nullptr;
    SettingsWindow* settings_ = nullptr;
    QSystemTrayIcon* tray_ = nullptr;
    bool quitting_ = false;
};

} // namespace quillet
