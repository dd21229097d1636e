// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QWidget>

#include <kinovane/film_project.hpp>

/// A row for each approval gate, in the order in which the project asks: first the gates that it has asked
/// for, then those to come.
QWidget* approvalRows(const std::map<std::string, kinovane::FilmApproval>& approvals,
                      const std::function<void(const std::string& gate)>& onApprove);
