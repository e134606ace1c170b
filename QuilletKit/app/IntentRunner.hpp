// The automation actions: compress, merge, split, convert, clean, make searchable, redact and stamp files
// handed in by a script, answering the files produced.
//
// Every action follows the same steps (`perform`): a fresh work folder
// "quillet-intent-WORD-UUID" under the temporary folder, a copy of each received file staged
// into it under its own name, one TaskSpec over the staged copies with the default output rule
// (so the outputs land next to the copies, in the work folder), the job run to its end, and a
// copy "out-NAME" of each output placed in the work folder; those copies are the answer. The
// work folder is left behind for the system's temporary-folder cleanup.
//
// Errors are not translated or retried: staging throws the file system's error, the run throws
// the job's error text (std::runtime_error). A compression that finds its input already optimal
// writes nothing and answers no file.
//
// `submit` runs the actions one at a time, in the order submitted, each on a thread of its own
// while the caller's thread stays free; the job itself runs in a worker process (`quillet job`),
// so a hostile file ends that process, never the app. `done` is called on the thread that owns
// the runner.
#pragma once

#include "tasks/TaskRecords.hpp"

#include <QObject>
#include <QStringList>

#include <deque>
#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QThread;

namespace quillet {

/// One action as received: its word, the files and the operation to run on them.
struct Intent {
    std::string word; ///< "compress", "merge", "split", "convert", "clean", "ocr", "redact" or "stamp"
    std::vector<std::filesystem::path> files;
    PDFOperationKind operation = PDFOperationKind::compress;
    OperationParameters parameters;

    /// `targetSizeMB` of at least 1 asks for that many MiB; otherwise the tier of `quality`,
    /// `balanced` when absent.
    static Intent compress(std::vector<std::filesystem::path> files,
                           std::optional<CompressionQualityTier> quality, int targetSizeMB);
    static Intent merge(std::vector<std::filesystem::path> files);
    static Intent split(std::filesystem::path file, int everyN);
    static Intent convert(std::filesystem::path file, int dpi);
    static Intent clean(std::vector<std::filesystem::path> files);
    /// `languages` empty reads English. Throws PDFCoreError (invalidInput) naming a language
    /// that is not installed.
    static Intent makeSearchable(std::vector<std::filesystem::path> files, std::string languages);
    /// Each pattern is words to find, or "regex:EXPRESSION", or "preset:email" (phone, iban,
    /// card, date). Throws PDFCoreError (invalidInput) naming a pattern that cannot be used.
    static Intent redact(std::vector<std::filesystem::path> files,
                         const std::vector<std::string>& patterns);
    /// `marks` is a JSON array of marks as a stamp job holds them ({"kind":"pageNumber",...}).
    /// Throws PDFCoreError (invalidInput) naming what is wrong with them.
    static Intent stamp(std::vector<std::filesystem::path> files, const std::string& marks);
};

class IntentRunner : public QObject {
    Q_OBJECT

  public:
    /// Runs a spec to its end and answers its outputs; throws the job's error.
    using Execute = std::function<std::vector<std::filesystem::path>(const TaskSpec&)>;
    /// The outputs, or the error that ended the action.
    using Done = std::function<void(const std::vector<std::filesystem::path>&, std::exception_ptr)>;

    /// Jobs run by `workerCommand` (TaskQueueService::defaultWorkerCommand in the app); work
    /// folders go under `temporaryFolder`, the system's when empty.
    explicit IntentRunner(QStringList workerCommand, std::filesystem::path temporaryFolder = {},
                          QObject* parent = nullptr);
    ~IntentRunner() override;

    /// `temporaryFolder` / "quillet-intent-" + name + "-" + a fresh UUID, created.
    static std::filesystem::path workDirectory(const std::string& name,
                                               const std::filesystem::path& temporaryFolder);
    /// Copies each file into `folder` under its file name; answers the copies in order.
    static std::vector<std::filesystem::path> stage(const std::vector<std::filesystem::path>& files,
                                                    const std::filesystem::path& folder);
    /// The steps of every action, on the calling thread.
    static std::vector<std::filesystem::path> perform(const Intent& intent,
                                                      const std::filesystem::path& temporaryFolder,
                                                      const Execute& execute);
    /// Runs `spec` in a worker process started with `workerCommand`, waiting for its end.
    static std::vector<std::filesystem::path> runInWorker(const QStringList& workerCommand,
                                                          const TaskSpec& spec);

    /// Queues `intent`; `done` hears its ending.
    void submit(Intent intent, Done done);
    bool isBusy() const { return running_ != nullptr || !waiting_.empty(); }

  signals:
    /// True when the first action is queued, false when the last one has ended.
    void busyChanged(bool busy);

  private:
    struct Pending {
        Intent intent;
        Done done;
    };
    void pump();

    QStringList workerCommand_;
    std::filesystem::path temporaryFolder_;
    std::deque<Pending> waiting_;
    QThread* running_ = nullptr;
};

} // namespace quillet
