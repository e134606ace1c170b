// The history screen: the finished jobs of the history store, newest first, with their date,
// operation, files, sizes and saving or failure. A chosen entry's output can be opened or shown
// in its folder, and the job run again: the same operation on the same files with the same
// options, under today's output rule. A job that needed a password is taken to the privacy
// screen instead, since the history keeps no password.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

#include <optional>

class QPushButton;
class QTreeWidget;

namespace quillet {

class ActionBar;

class HistoryView : public QWidget {
    Q_OBJECT

  public:
    explicit HistoryView(const ScreenContext& context, QWidget* parent = nullptr);

    /// Shows the entry with this id as the chosen one.
    void selectEntry(const std::string& id);
    void runAgain();
    void openOutput();
    void revealOutputs();
    void removeEntry();
    /// Empties the history after the user confirms.
    void clearAll();

  private:
    const HistoryEntry* chosen() const;
    void refresh();
    void updateActions();

    ScreenContext context_;
    QTreeWidget* table_;
    QPushButton* open_ = nullptr;
    QPushButton* reveal_ = nullptr;
    QPushButton* remove_ = nullptr;
    QPushButton* clear_ = nullptr;
    ActionBar* bar_ = nullptr;
};

} // namespace quillet
