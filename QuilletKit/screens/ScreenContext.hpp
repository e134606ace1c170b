// What every section's screen is given: the application (model, queue, history, renderer) and
// the shared list model of the loaded files. Screens are thin views: they collect options, build
// `OperationParameters` and call `AppModel::run` (or the organize controller).
#pragma once

#include "app/AppModel.hpp"
#include "app/QuilletApp.hpp"

namespace quillet {

class LoadedFilesModel;

struct ScreenContext {
    QuilletApp& app;
    LoadedFilesModel& files;

    AppModel& model() const { return app.model(); }
};

} // namespace quillet
