// The convert screen, both ways: the pages of the loaded PDFs to PNG, JPEG, TIFF or HEIC images
// (a DPI, a page selection read as it is typed, a quality for the formats that take one), or the
// loaded images to one PDF (a page size, how each image sits on it, a margin). The direction
// follows what is loaded: images alone turn into a PDF; anything with a PDF in it, into images.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

class QButtonGroup;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QSlider;
class QSpinBox;
class QStackedWidget;

namespace quillet {

class ActionBar;

class ConvertView : public QWidget {
    Q_OBJECT

  public:
    explicit ConvertView(const ScreenContext& context, QWidget* parent = nullptr);

    enum class Direction { toImages, toPDF };
    Direction direction() const;
    void setDirection(Direction direction);
    /// The parameters of the chosen direction.
    OperationParameters parameters() const;
    /// Runs the conversion, or says in the action bar why it cannot.
    void runConversion();

  private:
    QWidget* buildToImages();
    QWidget* buildToPDF();
    void filesChanged();
    void refresh();
    QString problem() const;

    ScreenContext context_;
    QButtonGroup* direction_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    QComboBox* format_ = nullptr;
    QSpinBox* dpi_ = nullptr;
    QLineEdit* selection_ = nullptr;
    QSlider* quality_ = nullptr;
    QLabel* qualityValue_ = nullptr;
    QComboBox* pageSize_ = nullptr;
    QComboBox* fit_ = nullptr;
    QDoubleSpinBox* margin_ = nullptr;
    ActionBar* bar_ = nullptr;
};

} // namespace quillet
