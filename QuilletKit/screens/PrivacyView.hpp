// The privacy screen, five tasks on the loaded PDFs: remove metadata (three presets, each saying
// what it removes, beside the personal details each file's analysis found), protect with a
// password (typed twice; an owner password optional), remove a known password, make scanned
// pages searchable in the languages chosen, and redact (RedactPanel). A recommendation followed from the home screen
// preselects its task and preset; the scanned-document one also starts the job.
//
// Passwords go into the job and nowhere else: the fields are emptied once a job is queued, and
// the history keeps no password of any job.
#pragma once

#include "screens/ScreenContext.hpp"
#include "app/SlicedLoop.hpp"

#include <QWidget>

class QButtonGroup;
class QCheckBox;
class QLineEdit;
class QTabWidget;
class QTreeWidget;

namespace quillet {

class ActionBar;
class RedactPanel;

class PrivacyView : public QWidget {
    Q_OBJECT

  public:
    explicit PrivacyView(const ScreenContext& context, QWidget* parent = nullptr);

    enum class Task { clean, protect, removePassword, makeSearchable, redact };
    Task task() const;
    void selectTask(Task task);
    CleanPreset preset() const;
    void selectPreset(CleanPreset preset);
    /// Runs the chosen task on the loaded PDFs, or says in the action bar why it cannot.
    void runTask();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* buildClean();
    QWidget* buildProtect();
    QWidget* buildRemovePassword();
    QWidget* buildMakeSearchable();
    /// The languages ticked, in Tesseract's "eng+chi_sim" form; empty when none is.
    std::string languages() const;
    void refresh();
    void refreshMetadata();
    /// Why the task cannot run; while typing (`running` false) an empty field is no problem yet.
    QString problem(bool running) const;

    ScreenContext context_;
    QTabWidget* tasks_ = nullptr;
    QButtonGroup* presets_ = nullptr;
    QTreeWidget* metadata_ = nullptr;
    QLineEdit* password_ = nullptr;
    QLineEdit* repeat_ = nullptr;
    QLineEdit* owner_ = nullptr;
    QLineEdit* current_ = nullptr;
    QList<QPair<QString, QCheckBox*>> languages_; // code and its box
    RedactPanel* redact_ = nullptr;
    ActionBar* bar_ = nullptr;
    SlicedLoop filling_;
};

} // namespace quillet
