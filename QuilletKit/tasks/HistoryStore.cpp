#include "tasks/HistoryStore.hpp"

#include "tasks/PersistedList.hpp"

#include <algorithm>

namespace quillet {

HistoryStore::HistoryStore(std::filesystem::path file)
    : file_(std::move(file)), entries_(PersistedList::load<HistoryEntry>(file_)) {}

void HistoryStore::add(HistoryEntry entry) {
    if (entry.parametersData) {
        entry.parametersData = parametersDataWithoutPasswords(*entry.parametersData);
    }
    entries_.insert(entries_.begin(), std::move(entry));
    if (entries_.size() > maxEntries) {
        entries_.resize(maxEntries);
    }
    persist();
}

void HistoryStore::remove(const std::string& id) {
    std::erase_if(entries_, [&id](const HistoryEntry& entry) { return entry.id == id; });
    persist();
}

void HistoryStore::clear() {
    entries_.clear();
    persist();
}

void HistoryStore::persist() {
    PersistedList::save(file_, entries_);
    if (changed) {
        changed();
    }
}

} // namespace quillet
