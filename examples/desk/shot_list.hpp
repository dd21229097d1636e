// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QListWidget>

#include "production.hpp"

/// The shots of a film with key frame, start, duration and state.
class ShotList final : public QListWidget {
  public:
    ShotList();

    void showShots(const Film& film);

  protected:
    void resizeEvent(QResizeEvent* event) override;
};
