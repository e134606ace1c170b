// Receives the file-manager actions: from `quillet-app --service WORD FILES...` in the instance
// it starts, and from ActivateAction of org.freedesktop.Application in the running one.
//
// Each invocation is routed at once on the calling (main) thread: its files are loaded into the
// model as the selection, the word's plan is submitted to the queue with exactly those files,
// and the window is brought to the front. A word that has no plan does nothing and reports
// nothing: a file manager has nowhere to show an error. An invocation without files is a
// desktop action of the launcher ("Compress a PDF with Quillet"): the window comes to the front,
// `chooseFiles` asks for the files, and the chosen ones are routed (none chosen: nothing).
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

#include <functional>

namespace quillet {

class AppModel;

class ServicesProvider : public QObject {
    Q_OBJECT

  public:
    /// `model` may be null (nothing is routed then); `bringToFront` may be empty.
    ServicesProvider(AppModel* model, std::function<void()> bringToFront,
                     QObject* parent = nullptr);

    /// An ActivateAction call: answers false when `name` is not one of the five words, so other
    /// actions of the application are left to their own handlers. The parameter is the list of
    /// file URIs, as one string-list value or as one string value per file.
    bool activateAction(const QString& name, const QVariantList& parameter);

    void quilletCompress(const QStringList& payload) { route(QStringLiteral("compress"), payload); }
    void quilletMerge(const QStringList& payload) { route(QStringLiteral("merge"), payload); }
    void quilletConvert(const QStringList& payload) { route(QStringLiteral("convert"), payload); }
    void quilletClean(const QStringList& payload) { route(QStringLiteral("clean"), payload); }
    void quilletImages(const QStringList& payload) { route(QStringLiteral("images"), payload); }

    /// The parameter of ActivateAction that carries `urls`.
    static QVariantList actionParameter(const QList<QUrl>& urls);

    /// Asks the user for files (the open dialog); empty when not set or cancelled.
    std::function<QList<QUrl>()> chooseFiles;

  private:
    void route(const QString& word, const QStringList& payload);

    QPointer<AppModel> model_;
    std::function<void()> bringToFront_;
};

} // namespace quillet
