// SPDX-License-Identifier: Apache-2.0

#include "production.hpp"

#include <QFileInfo>
#include <QImageReader>

#include <kinovane/background.hpp>
#include <kinovane/user_message.hpp>

using namespace kinovane;

static Film loadFilm(const std::filesystem::path& runManifest) {
    Film film{FilmProjectLoader::load(runManifest), {}, {}};
    film.shots = shots(film.snapshot);
    for (const FilmShot& shot : film.shots) {
        QImage& thumbnail = film.thumbnails.emplace_back();
        const auto file = shot.keyframe ? film.snapshot.artifactURL(*shot.keyframe).string() : std::string();
        QImageReader reader(QString::fromStdString(file), "png");
        if (!QFileInfo(reader.fileName()).isFile()) // Opening a pipe would wait for its writer.
            continue;
        reader.setScaledSize(reader.size().scaled(480, 270, Qt::KeepAspectRatio));
        thumbnail = reader.read();
    }
    return film;
}

Production::Production(Programs programs) : programs_(std::move(programs)) {
    reload_.setSingleShot(true);
    reload_.setInterval(200);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, &reload_, qOverload<>(&QTimer::start));
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, &reload_, qOverload<>(&QTimer::start));
    connect(&reload_, &QTimer::timeout, this, &Production::load);
}

/// Counts a task until it is done. The handler takes the result; the message of its exception is kept.
template <class T, class Handler>
void Production::follow(Activity& activity, Task<T> task, Handler handler) {
    ++activity.running;
    Q_EMIT stateChanged();
    task.then(qt_.executor(), [this, &activity, handler = std::move(handler)](Task<T> finished) {
        --activity.running;
        activity.failure.clear();
        try {
            handler(std::move(finished));
        } catch (const std::exception& error) {
            activity.failure = QString::fromStdString(userMessage(error)).trimmed();
            if (&activity == &operation_)
                Q_EMIT failed(activity.failure);
        }
        Q_EMIT stateChanged();
    });
}

void Production::open(const std::filesystem::path& runManifest) {
    runManifest_ = std::filesystem::absolute(runManifest);
    operation_.failure.clear();
    load();
}

void Production::load() {
    if (load_.running > 0) {
        reload_.start();
        return;
    }
    // Watched before loading, so that a change during it is noticed, and each time anew, because the watcher
    // loses a file that is replaced. The directory tells of replaced files, a file of being rewritten.
    if (const QStringList old = watcher_.files() + watcher_.directories(); !old.isEmpty())
        watcher_.removePaths(old);
    const std::filesystem::path root = runManifest_.parent_path();
    watcher_.addPath(QString::fromStdString(root.string()));
    for (const auto name : {FilmWorkspaceDocument::project, FilmWorkspaceDocument::productionPlan,
                            FilmWorkspaceDocument::treatment})
        watcher_.addPath(QString::fromStdString((root / name).string()));
    follow(load_, runInBackground([location = runManifest_] { return loadFilm(location); }),
           [this](Task<Film> loading) {
               Film film = loading.get();
               FilmChanges since;
               if (film_ && film_->snapshot.runManifest == film.snapshot.runManifest)
                   since = changes(film_->snapshot, film.snapshot);
               film_ = std::make_unique<Film>(std::move(film));
               Q_EMIT loaded(since);
           });
}

RunOptions Production::runOptions() {
    stop_ = StopSource();
    RunOptions options;
    options.standardInput = StandardInput::empty;
    options.stop = stop_.token();
    options.onOutput = [this, post = qt_.executor()](OutputStream, std::string_view chunk) {
        post([this, text = QString::fromUtf8(chunk)] { Q_EMIT output(text); });
    };
    return options;
}

void Production::goOn() {
    const FilmToolClient film(programs_.film);
    follow(operation_, film.advance(film_->snapshot.runManifest, programs_.pi, {}, {}, runOptions()),
           [](Task<ProcessResult> finished) { finished.get(); });
}

void Production::approve(const std::string& gate) {
    const FilmToolClient film(programs_.film);
    follow(operation_, film.approve(film_->snapshot.runManifest, gate, {}, programs_.approver, runOptions()),
           [](Task<void> finished) { finished.get(); });
}

void Production::publish() {
    stop_ = StopSource();
    PublishOptions options;
    options.stop = stop_.token();
    options.onStep = [this, post = qt_.executor()](PublishStep step) {
        post([this, step] { Q_EMIT stepReached(step); });
    };
    options.onProgress = [this, post = qt_.executor()](const VerificationProgress& progress) {
        post([this, progress] { Q_EMIT progressed(progress); });
    };
    const FilmWorkspaceSnapshot& film = film_->snapshot;
    follow(operation_,
           kinovane::publish(film, film.root.string(), film.root / "vistrel-handoff.json",
                             VistrelClient(programs_.vistrel), options),
           [this](Task<PublishReceipt> finished) { Q_EMIT published(finished.get()); });
}
