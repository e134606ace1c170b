// The stamp screen: the marks (page numbers, Bates numbers, texts, pictures) in the order they
// are drawn, the fields of the selected one, and a preview of any page of the first loaded PDF.
//
// The preview is the engine's own work: a pool thread stamps the chosen page alone into a private
// temporary file, and the render service draws that file, so what it shows is what the file
// gets. Changes are gathered for a quarter of a second before a new preview starts; a preview
// that arrives after the marks or the page changed again is dropped. A mark the engine refuses
// is named in the action bar, and nothing runs until it is fixed.
//
// Running stamps every loaded PDF in one job, in their order, so Bates numbers run on from one
// file to the next.
#pragma once

#include "model/OperationParameters.hpp"
#include "screens/ScreenContext.hpp"

#include <QImage>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSpinBox;
class QFormLayout;

namespace quillet {

class ActionBar;

class StampView : public QWidget {
    Q_OBJECT

  public:
    explicit StampView(const ScreenContext& context, QWidget* parent = nullptr);

    /// "pageNumber", "bates", "text" or "picture", with the defaults of its kind; selected.
    void addMark(const std::string& kind);
    void removeMark();
    /// Moves the selected mark up (-1) or down (+1) in the drawing order.
    void moveMark(int by);
    OperationParameters::Stamp stamp() const;
    /// The preview's page (zero-based) of the first loaded PDF.
    void showPage(int index);
    /// The last preview drawn; null before the first.
    QImage preview() const { return preview_; }
    /// Stamps the loaded PDFs, or says in the action bar why it cannot.
    void runStamp();

  signals:
    /// A new preview is shown (or its failure is named).
    void previewChanged();

  protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QWidget* buildFields();
    void selectMark(int row);
    void fieldsChanged();
    void refreshList();
    void refresh();
    void startPreview();
    std::optional<QString> source() const;

    ScreenContext context_;
    std::vector<OperationParameters::StampMark> marks_;
    int selected_ = -1;
    bool loading_ = false;

    QListWidget* list_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
    QWidget* fields_ = nullptr;
    QFormLayout* form_ = nullptr;
    std::vector<std::pair<std::string, int>> kindRows_; ///< the form rows of each kind's own fields
    QLineEdit* format_ = nullptr;
    QLineEdit* prefix_ = nullptr;
    QLineEdit* suffix_ = nullptr;
    QSpinBox* digits_ = nullptr;
    QSpinBox* start_ = nullptr;
    QLineEdit* text_ = nullptr;
    QLineEdit* image_ = nullptr;
    QDoubleSpinBox* width_ = nullptr;
    QComboBox* position_ = nullptr;
    QDoubleSpinBox* margin_ = nullptr;
    QDoubleSpinBox* size_ = nullptr;
    QLineEdit* colour_ = nullptr;
    QSpinBox* opacity_ = nullptr;
    QSpinBox* rotation_ = nullptr;
    QComboBox* layer_ = nullptr;
    QLabel* layerNote_ = nullptr;
    QLineEdit* pages_ = nullptr;
    QCheckBox* skipFirst_ = nullptr;

    QLabel* picture_ = nullptr;
    QLabel* pageLabel_ = nullptr;
    QPushButton* previous_ = nullptr;
    QPushButton* next_ = nullptr;
    ActionBar* bar_ = nullptr;

    int page_ = 0;
    QImage preview_;
    QTemporaryDir previews_;
    QTimer previewTimer_;
    quint64 generation_ = 0;
    QString renderKey_;
    QString previewFile_;
};

} // namespace quillet
