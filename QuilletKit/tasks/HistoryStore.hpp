// The list of ended jobs shown on the history screen and offered for repeating.
//
// Newest first, at most `maxEntries`. Every change rewrites the whole file at once (see
// PersistedList for how a bad file is treated); no operation reports a failure. Passwords never
// reach the file: the parameters of every added entry have their password fields emptied. Touch
// a store from one thread only.
#pragma once

#include "tasks/TaskRecords.hpp"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace quillet {

class HistoryStore {
  public:
    static constexpr std::size_t maxEntries = 500;

    /// Loads `file` ("history.json" in the support folder for the application).
    explicit HistoryStore(std::filesystem::path file);

    const std::vector<HistoryEntry>& entries() const { return entries_; }
    const std::filesystem::path& file() const { return file_; }

    /// Inserts at the front, drops the oldest beyond `maxEntries`, saves.
    void add(HistoryEntry entry);
    /// Removes every entry with this id, saves.
    void remove(const std::string& id);
    /// Empties the list, saves.
    void clear();

    /// Called after every change (for observers such as a screen).
    std::function<void()> changed;

  private:
    void persist();

    std::filesystem::path file_;
    std::vector<HistoryEntry> entries_;
};

} // namespace quillet
