// SPDX-License-Identifier: Apache-2.0

#include "publish_dialog.hpp"

#include <QDialog>
#include <QGridLayout>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <array>

#include "desk_style.hpp"

using namespace kinovane;

static constexpr std::array steps{"Checking the documents …", "Verifying the media files …",
                                  "Writing the manifest …", "Vistrel checks the film …",
                                  "Vistrel imports the film …"};

void openPublishDialog(Production& production, QWidget* parent) {
    auto* dialog = new QDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->resize(560, 400);
    auto* list = new QListWidget;
    list->setObjectName("findings");
    list->setWordWrap(true);
    list->setSelectionMode(QAbstractItemView::NoSelection);
    list->setFocusPolicy(Qt::NoFocus);
    const FilmWorkspaceSnapshot& film = production.film()->snapshot;
    const auto findings = VistrelHandoffBuilder::preflight(film, film.root.string());
    for (const PreflightFinding& finding : findings)
        list->addItem((finding.severity == PreflightSeverity::blocking ? "✗  " : "!  ") +
                      textOf(finding.text));
    if (findings.empty())
        list->addItem("✓  The documents are complete.");
    const bool publishable = !hasBlockingFinding(findings);
    auto* progress = new QProgressBar;
    progress->setTextVisible(false);
    auto* step = plainLabel("", "faint", true);
    step->setObjectName("publishStep");
    auto* publish = new QPushButton("Publish");
    publish->setObjectName("startPublish");
    publish->setDefault(true);
    auto* cancel = new QPushButton;
    cancel->setObjectName("cancelPublish");
    auto* grid = new QGridLayout(dialog);
    grid->setContentsMargins(20, 18, 20, 18);
    grid->setVerticalSpacing(12);
    grid->addWidget(plainLabel("Publish to Vistrel", "title"), 0, 0, 1, 3);
    grid->addWidget(list, 1, 0, 1, 3);
    grid->addWidget(progress, 2, 0, 1, 3);
    grid->addWidget(step, 3, 0);
    grid->setColumnStretch(0, 1);
    grid->addWidget(cancel, 3, 1);
    grid->addWidget(publish, 3, 2);

    QObject::connect(publish, &QPushButton::clicked, &production, &Production::publish);
    QObject::connect(cancel, &QPushButton::clicked, dialog,
                     [&production, dialog] { production.busy() ? production.stop() : dialog->reject(); });
    QObject::connect(dialog, &QDialog::rejected, &production, &Production::stop);
    QObject::connect(&production, &Production::stepReached, step, [step](PublishStep reached) {
        step->setText(steps.at(static_cast<std::size_t>(reached)));
    });
    QObject::connect(&production, &Production::progressed, progress,
                     [progress](const VerificationProgress& verified) {
                         progress->setRange(0, static_cast<int>(verified.filesTotal));
                         progress->setValue(static_cast<int>(verified.filesDone));
                     });
    QObject::connect(&production, &Production::published, step, [step](const PublishReceipt& receipt) {
        step->setText("Published. Vistrel has the film as " + textOf(receipt.imported->projectId) + ".");
    });
    QObject::connect(&production, &Production::failed, step, &QLabel::setText);
    const auto update = [publishable, publish, cancel, &production] {
        publish->setEnabled(publishable && !production.busy());
        cancel->setText(production.busy() ? "Cancel" : "Close");
    };
    QObject::connect(&production, &Production::stateChanged, dialog, update);
    update();
    dialog->open();
}
