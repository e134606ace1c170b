// The three values that carry a job through the system, and the state of a record.
//
// A `TaskSpec` is what a caller asks for; the queue turns it into a `TaskRecord`, which changes
// while the job waits, runs and ends; an ended job leaves a `HistoryEntry`. All are plain values
// with a JSON form (see PersistedValues.hpp for identities, dates and bytes):
//   - TaskSpec: "id", "operation", "inputs", "outputRule", "parameters", all required.
//   - TaskRecord: eleven required keys; "message", "error" and "parametersData" optional (a
//     missing key and null both read as absent; absent fields are left out when writing).
//   - HistoryEntry: nine required keys; "parametersData" optional.
// Key order is not significant and unknown keys are ignored. Decoding throws JSONDecodingError.
#pragma once

#include "model/OperationParameters.hpp"
#include "output/OutputRule.hpp"
#include "tasks/PersistedValues.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

enum class TaskState { queued, running, completed, failed, cancelled };

template <> struct RawValueNames<TaskState> {
    static constexpr std::array<std::string_view, 5> names{"queued", "running", "completed",
                                                           "failed", "cancelled"};
};

struct TaskSpec {
    std::string id; ///< canonical upper-case UUID, fixed at creation
    PDFOperationKind operation = PDFOperationKind::compress;
    std::vector<std::string> inputs; ///< file-system paths, in the caller's order
    OutputRule outputRule;
    OperationParameters parameters;

    /// A spec with a fresh identity.
    static TaskSpec make(PDFOperationKind operation, std::vector<std::string> inputs,
                         OutputRule outputRule, OperationParameters parameters);

    static TaskSpec fromJSON(const nlohmann::ordered_json& json);
    /// A JSON array of specs, the form of the queue file; one bad element fails the whole list.
    static std::vector<TaskSpec> listFromJSON(const nlohmann::ordered_json& json);
    bool operator==(const TaskSpec&) const = default;
};

struct TaskRecord {
    std::string id;
    TaskTime createdAt;
    PDFOperationKind operation = PDFOperationKind::compress;
    TaskState state = TaskState::queued;
    std::vector<std::string> inputNames; ///< last path component of each input
    std::vector<std::string> inputURLs;
    std::vector<std::string> outputURLs;
    std::int64_t originalBytes = 0;
    std::int64_t resultBytes = 0;
    double progress = 0;
    std::optional<std::string> message;
    std::optional<std::string> error;
    /// The JSON text of the job's parameters, so a history entry can repeat the job.
    std::optional<std::string> parametersData;

    /// The queued record of a newly submitted spec.
    static TaskRecord fromSpec(const TaskSpec& spec, TaskTime createdAt);

    static TaskRecord fromJSON(const nlohmann::ordered_json& json);
    bool operator==(const TaskRecord&) const = default;
};

struct HistoryEntry {
    std::string id;
    TaskTime date;
    PDFOperationKind operation = PDFOperationKind::compress;
    std::vector<std::string> inputNames;
    std::vector<std::string> inputURLs;
    std::vector<std::string> outputURLs;
    std::int64_t originalBytes = 0;
    std::int64_t resultBytes = 0;
    bool succeeded = false;
    std::optional<std::string> parametersData;

    /// The entry for an ended record: its id, operation, names, paths, byte counts and
    /// parameters, dated `date`.
    static HistoryEntry fromRecord(const TaskRecord& record, TaskTime date, bool succeeded);

    static HistoryEntry fromJSON(const nlohmann::ordered_json& json);
    bool operator==(const HistoryEntry&) const = default;
};

/// The JSON text of `parameters` as a record keeps it.
std::string encodedParameters(const OperationParameters& parameters);

/// `data` with every password emptied, for files that must never hold one. Text that does not
/// decode as parameters gives nothing: what it holds cannot be checked.
std::optional<std::string> parametersDataWithoutPasswords(const std::string& data);

nlohmann::ordered_json toJSON(const TaskSpec& spec);
nlohmann::ordered_json toJSON(const std::vector<TaskSpec>& specs);
nlohmann::ordered_json toJSON(const TaskRecord& record);
nlohmann::ordered_json toJSON(const HistoryEntry& entry);

} // namespace quillet
