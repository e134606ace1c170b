#include "app/IntentRunner.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFOCREngine.hpp"
#include "engines/PDFRedactionEngine.hpp"
#include "engines/PDFStampEngine.hpp"
#include "tasks/RedactionRequest.hpp"
#include "platform/UUID.hpp"
#include "tasks/queue/JobWorker.hpp"

#include <QEventLoop>
#include <QThread>

#include <memory>
#include <stdexcept>

namespace quillet {
namespace fs = std::filesystem;

namespace {

constexpr std::int64_t bytesPerMB = 1'048'576;

std::string text(const QString& string) {
    return string.toStdString();
}

} // namespace

Intent Intent::compress(std::vector<fs::path> files, std::optional<CompressionQualityTier> quality,
                        int targetSizeMB) {
    if (targetSizeMB >= 1) {
        return {"compress", std::move(files), PDFOperationKind::targetSize,
                OperationParameters::TargetSize{targetSizeMB * bytesPerMB}};
    }
    return {"compress", std::move(files), PDFOperationKind::compress,
            OperationParameters::Compress{quality.value_or(CompressionQualityTier::balanced)}};
}

Intent Intent::merge(std::vector<fs::path> files) {
    return {"merge", std::move(files), PDFOperationKind::merge, OperationParameters::Merge{}};
}

Intent Intent::split(fs::path file, int everyN) {
    OperationParameters::Split split;
    split.mode = SplitMode::everyNPages;
    split.everyN = everyN;
    return {"split", {std::move(file)}, PDFOperationKind::split, split};
}

Intent Intent::convert(fs::path file, int dpi) {
    OperationParameters::PDFToImages images;
    images.format = "png";
    images.dpi = dpi;
    return {"convert", {std::move(file)}, PDFOperationKind::pdfToImages, images};
}

Intent Intent::clean(std::vector<fs::path> files) {
    return {"clean", std::move(files), PDFOperationKind::clean,
            OperationParameters::Clean{CleanPreset::privacy}};
}

Intent Intent::makeSearchable(std::vector<fs::path> files, std::string languages) {
    if (languages.empty()) {
        languages = "eng";
    }
    PDFOCREngine::requireLanguages(languages);
    return {"ocr", std::move(files), PDFOperationKind::ocr,
            OperationParameters::OCR{std::move(languages)}};
}

Intent Intent::redact(std::vector<fs::path> files, const std::vector<std::string>& patterns) {
    OperationParameters::Redact redact;
    for (const auto& pattern : patterns) {
        if (pattern.starts_with("preset:")) {
            redact.presets.push_back(pattern.substr(7));
        } else if (pattern.starts_with("regex:")) {
            redact.patterns.push_back({pattern.substr(6), true, false});
        } else {
            redact.patterns.push_back({pattern, false, false});
        }
    }
    PDFRedactionEngine::validate(redactionRequest(redact));
    return {"redact", std::move(files), PDFOperationKind::redact, std::move(redact)};
}

Intent Intent::stamp(std::vector<fs::path> files, const std::string& marks) {
    OperationParameters parameters;
    try {
        auto json = nlohmann::ordered_json::object();
        json["type"] = "stamp";
        json["marks"] = nlohmann::ordered_json::parse(marks);
        parameters = OperationParameters::fromJSON(json);
    } catch (const std::exception& error) {
        throw PDFCoreError::invalidInput(std::string("The marks are not a JSON array of marks: ") +
                                         error.what());
    }
    const auto& stamp = *parameters.as<OperationParameters::Stamp>();
    for (const auto& mark : stamp.marks) {
        if (mark.kind == "picture" && !fs::path(mark.image).is_absolute()) {
            throw PDFCoreError::invalidInput("The picture " + mark.image + " is not an absolute path.");
        }
    }
    // Checked without reading the pictures: this runs on the caller's thread; the job reads them.
    PDFStampEngine::validate(stamp, false);
    return {"stamp", std::move(files), PDFOperationKind::stamp, std::move(parameters)};
}

IntentRunner::IntentRunner(QStringList workerCommand, fs::path temporaryFolder, QObject* parent)
    : QObject(parent), workerCommand_(std::move(workerCommand)),
      temporaryFolder_(std::move(temporaryFolder)) {
}

IntentRunner::~IntentRunner() {
    if (running_ != nullptr) {
        // Ends the wait for the worker, which is then stopped with its job.
        running_->disconnect(this);
        running_->quit();
        running_->wait();
        delete running_;
    }
}

fs::path IntentRunner::workDirectory(const std::string& name, const fs::path& temporaryFolder) {
    const fs::path root =
        temporaryFolder.empty() ? fs::temp_directory_path() : fs::absolute(temporaryFolder);
    fs::path folder = root / ("quillet-intent-" + name + "-" + newUUIDString());
    fs::create_directories(folder);
    return folder;
}

std::vector<fs::path> IntentRunner::stage(const std::vector<fs::path>& files,
                                          const fs::path& folder) {
    std::vector<fs::path> staged;
    for (const fs::path& file : files) {
        fs::path copy = folder / file.filename();
        // Two received files of one name (a merge from two folders) must both stay.
        for (int n = 2; fs::exists(copy); ++n) {
            copy = folder /
                   (file.stem().string() + "-" + std::to_string(n) + file.extension().string());
        }
        fs::copy_file(file, copy);
        staged.push_back(copy);
    }
    return staged;
}

std::vector<fs::path> IntentRunner::perform(const Intent& intent, const fs::path& temporaryFolder,
                                            const Execute& execute) {
    const fs::path folder = workDirectory(intent.word, temporaryFolder);
    std::vector<std::string> inputs;
    for (const fs::path& copy : stage(intent.files, folder)) {
        inputs.push_back(copy.string());
    }
    const TaskSpec spec =
        TaskSpec::make(intent.operation, std::move(inputs), OutputRule{}, intent.parameters);
    std::vector<fs::path> answers;
    for (const fs::path& output : execute(spec)) {
        const fs::path copy = folder / ("out-" + output.filename().string());
        fs::copy_file(output, copy, fs::copy_options::overwrite_existing);
        answers.push_back(copy);
    }
    return answers;
}

std::vector<fs::path> IntentRunner::runInWorker(const QStringList& workerCommand,
                                                const TaskSpec& spec) {
    JobWorker worker(workerCommand, spec);
    std::optional<JobWorker::Ending> ending;
    QEventLoop loop;
    QObject::connect(&worker, &JobWorker::ended, &loop,
                     [&ending, &loop](const JobWorker::Ending& end) {
                         ending = end;
                         loop.quit();
                     });
    worker.start();
    if (!ending) {
        loop.exec();
    }
    if (!ending || ending->kind == JobWorker::Ending::Kind::cancelled) {
        throw std::runtime_error(text(tr("The action was stopped before it finished.")));
    }
    if (ending->kind == JobWorker::Ending::Kind::failed) {
        throw std::runtime_error(ending->error);
    }
    return {ending->outputs.begin(), ending->outputs.end()};
}

void IntentRunner::submit(Intent intent, Done done) {
    const bool wasBusy = isBusy();
    waiting_.push_back(Pending{std::move(intent), std::move(done)});
    if (!wasBusy) {
        emit busyChanged(true);
    }
    pump();
}

void IntentRunner::pump() {
    if (running_ != nullptr) {
        return;
    }
    if (waiting_.empty()) {
        emit busyChanged(false);
        return;
    }
    auto pending = std::make_shared<Pending>(std::move(waiting_.front()));
    waiting_.pop_front();
    auto outputs = std::make_shared<std::vector<fs::path>>();
    auto error = std::make_shared<std::exception_ptr>();
    running_ = QThread::create(
        [pending, outputs, error, command = workerCommand_, folder = temporaryFolder_] {
            try {
                *outputs = perform(pending->intent, folder, [&command](const TaskSpec& spec) {
                    return runInWorker(command, spec);
                });
            } catch (...) {
                *error = std::current_exception();
            }
        });
    connect(running_, &QThread::finished, this, [this, pending, outputs, error] {
        running_->deleteLater();
        running_ = nullptr;
        if (pending->done) {
            pending->done(*outputs, *error);
        }
        pump();
    });
    running_->start();
}

} // namespace quillet
