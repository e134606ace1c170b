// Everything the analysis knows about one PDF, in tabs: overview, pages, images, fonts,
// metadata, security, and the predicted size per compression tier. Every text can be selected
// and copied. Built from an analysis the model already holds: it reads nothing itself.
#pragma once

#include "engines/PDFAnalysis.hpp"

#include <QDialog>

class QTabWidget;

namespace quillet {

class InspectorSheet : public QDialog {
    Q_OBJECT

  public:
    InspectorSheet(const QString& path, const PDFAnalysis& analysis, QWidget* parent = nullptr);

    QTabWidget& tabs() const { return *tabs_; }

  private:
    QString overview() const;
    QString pages() const;
    QString images() const;
    QString fonts() const;
    QString metadata() const;
    QString security() const;
    QString compression() const;
    static QString fontSummary(const std::vector<std::string>& fonts);

    QString path_;
    PDFAnalysis analysis_;
    QTabWidget* tabs_;
};

} // namespace quillet
