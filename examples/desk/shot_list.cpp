// SPDX-License-Identifier: Apache-2.0

#include "shot_list.hpp"

#include <QPixmap>
#include <QScrollBar>
#include <algorithm>

#include "desk_style.hpp"

ShotList::ShotList() {
    setObjectName("shots");
    setViewMode(IconMode);
    setMovement(Static);
    setResizeMode(Adjust);
    setSelectionMode(NoSelection);
    setVerticalScrollMode(ScrollPerPixel);
}

/// Fills the width with cards.
void ShotList::resizeEvent(QResizeEvent* event) {
    const int usable = width() - 18; // Beside the scroll bar.
    const int card = usable / std::max(1, usable / std::max(170, height() / 3));
    setIconSize({card - 22, (card - 22) * 9 / 16});
    setGridSize({card, iconSize().height() + 62});
    QListWidget::resizeEvent(event);
    doItemsLayout(); // Qt would wait a tenth of a second.
}

static QString timesOf(const kinovane::FilmShot& shot) {
    if (!shot.startMilliseconds || !shot.durationMilliseconds)
        return {};
    const auto [minutes, rest] = std::lldiv(*shot.startMilliseconds, 60000);
    return QString("%1:%2  ·  %3 s")
        .arg(minutes)
        .arg(static_cast<double>(rest) / 1000, 4, 'f', 1, u'0')
        .arg(static_cast<double>(*shot.durationMilliseconds) / 1000, 0, 'f', 1);
}

void ShotList::showShots(const Film& film) {
    const int position = verticalScrollBar()->value();
    clear();
    for (std::size_t index = 0; index < film.shots.size(); ++index) {
        const kinovane::FilmShot& shot = film.shots[index];
        QPixmap picture(480, 270);
        picture.fill(0xe4dfd5); // Until there is a key frame.
        if (!film.thumbnails[index].isNull())
            picture = QPixmap::fromImage(film.thumbnails[index]);
        const std::string& state =
            shot.state && shot.state->status ? *shot.state->status : shot.planned.status;
        const QString text =
            QString("%1  ·  %2\n%3").arg(textOf(shot.planned.id), labelText(state), timesOf(shot));
        addItem(new QListWidgetItem(picture, text));
    }
    verticalScrollBar()->setValue(position);
}
