// SPDX-License-Identifier: Apache-2.0

#include "desk_window.hpp"

#include <QCloseEvent>
#include <QFileDialog>
#include <QHBoxLayout>

#include "approval_list.hpp"
#include "desk_style.hpp"
#include "publish_dialog.hpp"

/// What is different, in one line.
static QString textOf(const kinovane::FilmChanges& changes) {
    QStringList parts;
    for (const auto& change : {changes.phase, changes.status})
        if (change)
            parts << labelText(change->before) + " → " + labelText(change->after);
    const auto add = [&parts](const char* what, const auto& list) {
        if (!list.empty())
            parts << QString("%1 %2%3").arg(list.size()).arg(what, list.size() > 1 ? "s" : "");
    };
    add("approval", changes.approvals);
    add("planned shot", changes.plannedShots);
    add("shot", changes.shots);
    add("artifact", changes.artifacts);
    add("issue", changes.issues);
    add("proof step", changes.proofSteps);
    return "Changed: " + parts.join(", ");
}

/// Fills a grid with the ten production steps, with a tick for each complete one.
static void showProof(const kinovane::FilmProof& proof, QGridLayout& grid) {
    while (const std::unique_ptr<QLayoutItem> former{grid.takeAt(0)})
        delete former->widget();
    for (int column = 0; const auto& [key, complete] : proof.steps()) {
        auto* tick = plainLabel(complete ? "✓" : "", complete ? "done" : "open");
        tick->setFixedSize(24, 24);
        tick->setAlignment(Qt::AlignCenter);
        grid.addWidget(tick, 0, column, Qt::AlignCenter);
        grid.addWidget(plainLabel(labelText(key), "faint"), 1, column, Qt::AlignCenter);
        grid.setColumnStretch(column++, 1);
    }
}

DeskWindow::DeskWindow(Programs programs) : production_(std::move(programs)) {
    auto* top = new QHBoxLayout;
    top->addWidget(title_ = plainLabel("No film is open", "title", true), 1);
    top->addWidget(phase_ = plainLabel("", "pill"));
    const auto addButton = [&](const char* text, const char* name) {
        auto* button = new QPushButton(text);
        button->setObjectName(name);
        top->addWidget(button);
        return button;
    };
    open_ = addButton("Open …", "open");
    stop_ = addButton("Stop", "stop");
    goOn_ = addButton("Go on", "goOn");
    publish_ = addButton("Publish …", "publish");
    approvals_ = new QScrollArea;
    approvals_->setProperty("look", "panel");
    approvals_->setWidgetResizable(true);
    approvals_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    log_ = new QPlainTextEdit;
    log_->setReadOnly(true);
    log_->setMaximumBlockCount(5000);
    log_->setPlaceholderText("What the film tool writes appears here.");
    auto* side = new QVBoxLayout;
    side->addWidget(approvals_, 3);
    side->addWidget(log_, 2);
    auto* body = new QHBoxLayout;
    body->addWidget(shots_ = new ShotList, 7);
    body->addLayout(side, 3);
    setCentralWidget(new QWidget);
    auto* column = new QVBoxLayout(centralWidget());
    column->setContentsMargins(22, 18, 22, 12);
    column->setSpacing(14);
    column->addLayout(top);
    column->addWidget(idea_ = plainLabel("", "faint", true));
    column->addWidget(failure_ = plainLabel("", "failure", true));
    column->addLayout(proof_ = new QGridLayout);
    proof_->setVerticalSpacing(3);
    column->addLayout(body, 1);
    column->addWidget(message_ = plainLabel("", "message", true));
    resize(1100, 760);

    connect(open_, &QPushButton::clicked, this, [this] {
        const QString file = QFileDialog::getOpenFileName(this, "Open a film", {}, "Run manifests (*.json)");
        if (!file.isEmpty())
            production_.open(file.toStdString());
    });
    connect(goOn_, &QPushButton::clicked, &production_, &Production::goOn);
    connect(stop_, &QPushButton::clicked, &production_, &Production::stop);
    connect(publish_, &QPushButton::clicked, this, [this] { openPublishDialog(production_, this); });
    connect(&production_, &Production::loaded, this, &DeskWindow::showFilm);
    connect(&production_, &Production::stateChanged, this, &DeskWindow::showState);
    connect(&production_, &Production::output, this, [this](const QString& text) {
        log_->moveCursor(QTextCursor::End);
        log_->insertPlainText(text);
    });
    showState();
}

void DeskWindow::showFilm(const kinovane::FilmChanges& changes) {
    const kinovane::FilmProject& project = production_.film()->snapshot.project;
    setWindowTitle(textOf(project.title));
    title_->setText(textOf(project.title));
    idea_->setText(textOf(project.idea));
    phase_->setText(labelText(project.phase) + "  ·  " + labelText(project.status));
    showProof(project.proof, *proof_);
    shots_->showShots(*production_.film());
    const auto approve = [this](const std::string& gate) { production_.approve(gate); };
    approvals_->setWidget(approvalRows(project.approvals, approve)); // Deletes the former rows.
    if (!changes.empty())
        message_->setText(textOf(changes));
}

void DeskWindow::showState() {
    const bool ready = production_.film() && !production_.busy() && !closing_;
    open_->setEnabled(!production_.busy() && !closing_);
    goOn_->setEnabled(ready);
    publish_->setEnabled(ready);
    approvals_->setEnabled(ready);
    stop_->setEnabled(production_.busy());
    failure_->setText(production_.failure());
    failure_->setVisible(!production_.busy() && !production_.failure().isEmpty());
    phase_->setVisible(production_.film() != nullptr);
    if (closing_ && production_.idle())
        close();
}

void DeskWindow::closeEvent(QCloseEvent* event) {
    if (production_.idle())
        return;
    closing_ = true;
    production_.stop();
    showState();
    event->ignore();
}
