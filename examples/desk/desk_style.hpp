// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QLabel>
#include <QString>

inline QString textOf(const std::string& text) { return QString::fromStdString(text); }

/// A word of a document as a label: "human-review" and "humanReview" become "Human review".
QString labelText(std::string_view word);

/// A label that shows its text as plain text; `look` names a rule of the style sheet.
QLabel* plainLabel(const QString& text, const char* look, bool wraps = false);

/// Makes the whole application light, whatever the desktop's colours are.
void applyDeskStyle();
