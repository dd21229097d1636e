// SPDX-License-Identifier: Apache-2.0

// A window for a film workspace: desk [options] [RUN_JSON]
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>

#include "desk_style.hpp"
#include "desk_window.hpp"

int main(int count, char** arguments) {
    const QApplication application(count, arguments);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument("run", "The run manifest of a film.", "[RUN_JSON]");
    parser.addOptions({{"film", "The film tool.", "program", "film"},
                       {"pi", "The coding agent.", "command", "pi"},
                       {"vistrel", "Vistrel.", "program", "vistrel"},
                       {"name", "Who approves.", "name", QDir::home().dirName()}});
    parser.process(application);
    const auto value = [&](const char* option) { return parser.value(option).toStdString(); };

    applyDeskStyle();
    DeskWindow window({value("film"), value("pi"), value("vistrel"), value("name")});
    window.show();
    if (const QStringList files = parser.positionalArguments(); !files.isEmpty())
        window.production().open(files.first().toStdString());
    return QApplication::exec();
}
