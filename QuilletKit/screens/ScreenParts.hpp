// Pieces the section screens share so they look and behave alike: the action bar at the bottom
// (a message on the left, the section's main button on the right), the reading of a page
// selection as the user types it, and small questions about loaded files.
#pragma once

#include "engines/PDFSplitEngine.hpp"

#include <QString>
#include <QStringList>
#include <QWidget>

#include <string>
#include <utility>
#include <vector>

class QFormLayout;
class QLabel;
class QPushButton;

class QCheckBox;

namespace quillet {

class AppModel;

/// The bar under a screen: a message that wraps, any extra controls, and the main button (the
/// window's default button, so Return runs it). A message is a note or a problem; a problem is
/// drawn in the palette's failure colour and read out by screen readers as an alert.
class ActionBar : public QWidget {
    Q_OBJECT

  public:
    ActionBar(const QString& action, QWidget* parent = nullptr);

    QPushButton& button() const { return *button_; }
    QLabel& message() const { return *message_; }
    /// Adds a control between the message and the main button.
    void addControl(QWidget* control);

    void showNote(const QString& text);
    void showProblem(const QString& text);
    bool showsProblem() const { return problem_; }

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void colour();

    QLabel* message_;
    QPushButton* button_;
    bool problem_ = false;
};

/// What a page selection typed by the user means for a document, read with the engine's grammar.
struct PageSelection {
    std::vector<PageRange> ranges; ///< as the engine will read them (clamped to the document)
    QString problem;               ///< why it cannot run; empty when it can
    QString warning;               ///< something worth knowing that does not stop it

    bool isValid() const { return problem.isEmpty(); }

    /// Reads `text` for a document of `pageCount` pages (0 while unknown). Every piece must be a
    /// page or a range: the engine would silently drop one that is not, and the user would get
    /// fewer pages than they asked for. An empty text is a problem unless `emptyMeansAll`; a
    /// text of separators alone always is (the engine refuses it).
    /// `example` is the sample shown in the message for an empty or malformed text.
    static PageSelection read(const QString& text, int pageCount, bool emptyMeansAll,
                              const QString& example);
    /// The distinct pages selected, ascending (zero-based).
    std::vector<int> pages() const;
};

/// A quiet explanatory line: wrapped, in the placeholder colour, as wide as it may grow.
QLabel* noteLabel(const QString& text, QWidget* parent);
/// A form on `page` whose notes take the width while its fields keep theirs.
QFormLayout* formLayout(QWidget* page, int margin = 0);

/// A box for each redaction preset (email, phone, iban, card, date), named `objectPrefix` + the
/// preset, labelled in the user's language; answered with the preset names.
std::vector<std::pair<QString, QCheckBox*>> redactionPresetBoxes(QWidget* parent,
                                                                 const QString& objectPrefix);

namespace ScreenFiles {

bool isPDF(const QString& path);
bool isImage(const QString& path);
/// A path of a record or history entry, which may be written as a file URL.
QString localPath(const std::string& pathOrURL);
/// The loaded files of `model` that are PDFs, or images, in their order.
QStringList pdfs(const AppModel& model);
QStringList images(const AppModel& model);

} // namespace ScreenFiles

} // namespace quillet
