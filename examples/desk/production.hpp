// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QFileSystemWatcher>
#include <QImage>
#include <QTimer>

#include <kinovane/film_changes.hpp>
#include <kinovane/film_shots.hpp>
#include <kinovane/publish.hpp>
#include <kinovane/tooling.hpp>

#include "qt_executor.hpp"

/// The external programs, by name or path, and the name under which gates are approved.
struct Programs {
    std::string film, pi, vistrel, approver;
};

/// A workspace as it was loaded, with one thumbnail for each shot; null where no key frame can be read.
struct Film {
    kinovane::FilmWorkspaceSnapshot snapshot;
    std::vector<kinovane::FilmShot> shots;
    std::vector<QImage> thumbnails;
};

/// The open workspace and the operations on it. Used on the interface thread; no function blocks.
class Production final : public QObject {
    Q_OBJECT
  public:
    explicit Production(Programs programs);

    /// Loads a workspace, and loads it again whenever its documents change.
    void open(const std::filesystem::path& runManifest);

    // These need a film and must not be called while another of them is running.
    void goOn();
    void approve(const std::string& gate);
    void publish();

    void stop() { stop_.requestStop(); }

    const Film* film() const { return film_.get(); }            ///< Null until a film is loaded.
    bool busy() const { return operation_.running > 0; }        ///< goOn, approve or publish is running.
    bool idle() const { return !busy() && load_.running == 0; } ///< Nothing is running.

    /// Why the film cannot be loaded, else why the last operation failed, else an empty text.
    const QString& failure() const { return load_.failure.isEmpty() ? operation_.failure : load_.failure; }

  Q_SIGNALS:
    void stateChanged(); ///< Of busy(), idle(), film() or failure().
    void loaded(const kinovane::FilmChanges& sinceLastLoad);
    void output(const QString& text); ///< Written by the film tool.
    void stepReached(kinovane::PublishStep step);
    void progressed(const kinovane::VerificationProgress& progress);
    void published(const kinovane::PublishReceipt& receipt);
    void failed(const QString& message); ///< Not for a film that cannot be loaded.

  private:
    struct Activity {
        int running = 0;
        QString failure; ///< Of the last one.
    };

    void load();
    kinovane::RunOptions runOptions();
    template <class T, class Handler>
    void follow(Activity& activity, kinovane::Task<T> task, Handler handler);

    Programs programs_;
    std::filesystem::path runManifest_;
    std::unique_ptr<Film> film_;
    Activity operation_, load_;
    kinovane::StopSource stop_;
    QFileSystemWatcher watcher_;
    QTimer reload_; // Joins the notifications of one step of the film tool.
    QtExecutor qt_;
};
