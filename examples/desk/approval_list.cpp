// SPDX-License-Identifier: Apache-2.0

#include "approval_list.hpp"

#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "desk_style.hpp"

using Gate = std::pair<std::string, kinovane::FilmApproval>;

/// Time stamps of one project have one form, so that their texts are ordered as the times are.
static auto orderOf(const Gate& gate) {
    const auto& [status, summary, asked, approved, approver, note] = gate.second;
    return std::tuple(!asked, asked, !approved, approved, gate.first);
}

QWidget* approvalRows(const std::map<std::string, kinovane::FilmApproval>& approvals,
                      const std::function<void(const std::string& gate)>& onApprove) {
    std::vector<Gate> gates(approvals.begin(), approvals.end());
    std::ranges::sort(gates, {}, orderOf);
    auto* rows = new QWidget;
    auto* column = new QVBoxLayout(rows);
    column->setSpacing(12);
    for (const auto& [name, approval] : gates) {
        auto* words = new QVBoxLayout;
        words->setSpacing(1);
        words->addWidget(plainLabel(labelText(name), "strong"));
        words->addWidget(plainLabel(textOf(approval.summary.value_or(std::string())), "faint", true));
        auto* row = new QHBoxLayout;
        row->addLayout(words, 1);
        if (approval.status == "approved") {
            row->addWidget(plainLabel("✓ Approved", "good"));
        } else if (approval.requestedAt) {
            auto* button = new QPushButton("Approve");
            button->setObjectName(textOf("approve " + name));
            button->setDefault(true);
            QObject::connect(button, &QPushButton::clicked, [=, gate = name] { onApprove(gate); });
            row->addWidget(button);
        } else {
            row->addWidget(plainLabel(labelText(approval.status), "faint"));
        }
        column->addLayout(row);
    }
    column->addStretch();
    return rows;
}
