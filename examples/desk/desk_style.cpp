// SPDX-License-Identifier: Apache-2.0

#include "desk_style.hpp"

#include <QApplication>
#include <QRegularExpression>
#include <QStyleFactory>

QString labelText(std::string_view word) {
    QString label = QString::fromUtf8(word.data(), static_cast<qsizetype>(word.size()));
    label.replace('-', ' ').replace(QRegularExpression("([a-z])([A-Z])"), "\\1 \\2");
    return label.left(1).toUpper() + label.mid(1).toLower();
}

QLabel* plainLabel(const QString& text, const char* look, bool wraps) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(wraps);
    label->setObjectName(look);
    label->setProperty("look", look);
    return label;
}

void applyDeskStyle() {
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    const QColor paper(0xf7f5f0), ink(0x2c2a26);
    QApplication::setPalette(
        QPalette(ink, paper, Qt::white, ink, Qt::gray, ink, Qt::white, Qt::white, paper));
    qApp->setStyleSheet(R"(
        * { font-size: 13px; }
        [look="title"] { font-size: 20px; font-weight: bold; }
        [look="faint"], [look="message"] { color: #6b665d; font-size: 12px; }
        [look="strong"] { font-weight: bold; }
        [look="good"] { color: #2f6f6b; font-size: 12px; }
        [look="pill"] { background: #e6efed; color: #2f6f6b; border-radius: 11px; padding: 4px 11px; }
        [look="done"] { background: #2f6f6b; color: white; border-radius: 12px; font-weight: bold; }
        [look="open"] { background: white; border: 1px solid #cfc8bb; border-radius: 12px; }
        [look="failure"] { background: #fbe9e4; color: #9a3b22; border-radius: 6px; padding: 8px; }
        QScrollArea > QWidget > QWidget, #shots { background: transparent; border: none; }
        [look="panel"], QPlainTextEdit, #findings, #shots::item {
            background: white; border: 1px solid #e4dfd5; border-radius: 8px; padding: 6px; }
        #shots::item { margin: 0 8px 8px 0; }
        QPushButton { background: white; border: 1px solid #cfc8bb; border-radius: 6px; padding: 6px 12px; }
        QPushButton:hover { border-color: #2f6f6b; }
        QPushButton:default { background: #2f6f6b; border-color: #2f6f6b; color: white; }
        QPushButton:disabled { background: #f1eee8; border-color: #e4dfd5; color: #b5afa4; }
        QScrollBar { background: transparent; width: 8px; }
        QScrollBar::handle { background: #d8d2c6; border-radius: 4px; min-height: 24px; }
        QScrollBar::add-line, QScrollBar::sub-line { height: 0; }
        QProgressBar { background: #e4dfd5; border: none; border-radius: 4px; max-height: 8px; }
        QProgressBar::chunk { background: #2f6f6b; border-radius: 4px; })");
}
