// The settings window "Settings": appearance, where results go and what they are called, the
// language, the history, and the statistics switch. Every change is saved at once.
#pragma once

#include <QDialog>

#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace quillet {

class QuilletApp;

class SettingsWindow : public QDialog {
    Q_OBJECT

  public:
    /// `relaunch` starts a new instance and quits this one (offered after a language change).
    SettingsWindow(QuilletApp& app, std::function<void()> relaunch, QWidget* parent = nullptr);

  private:
    QWidget* appearanceGroup();
    QWidget* outputGroup();
    QWidget* languageGroup();
    QWidget* pagesGroup();
    QWidget* historyGroup();
    QWidget* privacyGroup();
    void saveOutputRule();
    void refreshOutput();
    void refreshLanguage();
    void refreshHistory();

    QuilletApp& app_;
    std::function<void()> relaunch_;
    QComboBox* location_ = nullptr;
    QLineEdit* subfolder_ = nullptr;
    QLineEdit* customFolder_ = nullptr;
    QPushButton* chooseFolder_ = nullptr;
    QLineEdit* template_ = nullptr;
    QLabel* example_ = nullptr;
    QCheckBox* replace_ = nullptr;
    QLabel* replaceWarning_ = nullptr;
    QWidget* restart_ = nullptr;
    QPushButton* clearHistory_ = nullptr;
};

} // namespace quillet
