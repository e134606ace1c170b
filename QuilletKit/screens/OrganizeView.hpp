// The organize screen: the pages of one PDF as a grid of thumbnails to reorder, rotate, delete,
// duplicate, extract and insert, with undo and save.
//
// It shows the first PDF of the loaded files, opened when the files change while the screen is
// in sight (or when it comes into sight). Every operation runs in the OrganizeController off the
// main thread; the screen shows the state the controller publishes and asks the person what only
// a person can answer (files to insert, where to extract, whether to save a signed document).
#pragma once

#include "app/OrganizeController.hpp"
#include "screens/ScreenContext.hpp"

#include <QWidget>

#include <set>

class QAction;
class QLabel;
class QSlider;
class QStackedWidget;

namespace quillet {

class OrganizePageGrid;
class OrganizePageModel;
struct PageID;

class OrganizeView : public QWidget {
    Q_OBJECT

  public:
    explicit OrganizeView(const ScreenContext& context, QWidget* parent = nullptr);
    ~OrganizeView() override;

    OrganizeController& controller() const { return *controller_; }
    OrganizePageModel& pages() const { return *pages_; }
    OrganizePageGrid& grid() const { return *grid_; }

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QAction* addAction(const QString& objectName, const QString& text, const QString& iconText,
                       const QString& icon, const QKeySequence& shortcut);
    QWidget* makeToolbar();
    QWidget* makeFooter();
    void loadFirstPDF();
    void stateChanged();
    void applySelection(const std::set<PageID>& ids);
    std::set<PageID> selectedIDs() const;
    void updateActions();
    void updateStatus();
    void insertFiles();
    void extract();
    void confirmSignedSave();
    void showError(const QString& message);
    /// Asks before replacing changed, unsaved pages with `next`; loads it if the user agrees.
    void confirmDiscard(const QString& next);
    void showResult(const QString& text, const QString& path);

    ScreenContext context_;
    OrganizeController* controller_;
    OrganizePageModel* pages_;
    OrganizePageGrid* grid_;
    QStackedWidget* stack_;
    QLabel* empty_;
    QLabel* status_;
    QLabel* result_;
    QSlider* zoom_;
    QAction* rotateLeft_;
    QAction* rotateRight_;
    QAction* duplicate_;
    QAction* delete_;
    QAction* insert_;
    QAction* extract_;
    QAction* undo_;
    QAction* save_;
    QAction* selectAll_;
    QString requested_; ///< the file last asked to be opened
    bool filesPending_ = true;
    bool unsaved_ = false; ///< pages changed since the document was opened or last saved
    QString shownSource_;
    QString shownSaved_;
    QList<OrganizeController::Cell> shownCells_;
    int dragRow_ = -1;
};

} // namespace quillet
