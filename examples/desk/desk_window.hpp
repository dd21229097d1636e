// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>

#include "production.hpp"
#include "shot_list.hpp"

/// The window of one workspace. It closes once the running operations have ended.
class DeskWindow final : public QMainWindow {
  public:
    explicit DeskWindow(Programs programs);

    Production& production() { return production_; }

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    void showFilm(const kinovane::FilmChanges& changes);
    void showState();

    Production production_;
    QLabel *title_, *idea_, *phase_, *failure_, *message_;
    QPushButton *open_, *goOn_, *stop_, *publish_;
    QGridLayout* proof_;
    ShotList* shots_;
    QScrollArea* approvals_;
    QPlainTextEdit* log_;
    bool closing_ = false;
};
