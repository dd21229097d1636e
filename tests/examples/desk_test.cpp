// SPDX-License-Identifier: Apache-2.0

#include <QApplication>
#include <QDialog>
#include <QListWidget>
#include <QProgressBar>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <kinovane/tooling.hpp>

#include "desk_style.hpp"
#include "desk_window.hpp"
#include "support/child_counts.hpp"
#include "support/sample_film.hpp"
#include "support/variable.hpp"

namespace kinovane::test {
namespace {

namespace fs = std::filesystem;

/// Processes events until the condition holds. Only a failing test waits until the time is over.
template <class Condition>
bool waitUntil(Condition condition) {
    QTimer limit;
    limit.setSingleShot(true);
    limit.start(std::chrono::seconds(30));
    while (!condition() && limit.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return condition();
}

/// A window with a film, driven with the mouse. The external programs are the simulators.
class Desk : public testing::Test {
  protected:
    explicit Desk(const char* film = "film", const char* vistrel = "vistrel")
        : window_({programPath(film), "pi", programPath(vistrel), "director"}) {
        window_.show();
    }
    ~Desk() override {
        window_.close();
        EXPECT_TRUE(waitUntil([this] { return window_.production().idle(); }));
    }

    void open(const fs::path& runManifest) {
        QSignalSpy loaded(&window_.production(), &Production::loaded);
        window_.production().open(runManifest);
        EXPECT_TRUE(waitUntil([&] { return !loaded.isEmpty(); }));
    }

    /// The run manifest of a copy of the sample film.
    fs::path copyOfTheSampleFilm() {
        fs::copy(sampleFilm(), directory_ / "film", fs::copy_options::recursive);
        return directory_ / "film/run.json";
    }

    /// The run manifest of a film that waits for the approval of its plan.
    fs::path plannedFilm() {
        return FilmToolClient(programPath("film")).plan("A lamp", "Ferry", 6, directory_ / "film").get();
    }

    template <class Widget>
    Widget& find(const char* name = "") {
        auto* found = window_.findChild<Widget*>(name);
        if (found == nullptr)
            throw std::logic_error(std::string("there is no widget ") + name);
        return *found;
    }

    void click(const char* name) { QTest::mouseClick(&find<QPushButton>(name), Qt::LeftButton); }

    void expectText(const char* name, const std::string& expected) {
        auto& label = find<QLabel>(name);
        waitUntil([&] { return label.text().toStdString() == expected && label.isVisible(); });
        EXPECT_EQ(label.text().toStdString(), expected);
        EXPECT_TRUE(label.isVisible());
    }

    bool busy() { return window_.production().busy(); }

    void clickGoOnAndWaitForOutput(const QString& output) {
        click("goOn");
        EXPECT_TRUE(waitUntil([&] { return find<QPlainTextEdit>().toPlainText() == output; }));
        EXPECT_TRUE(busy());
    }

    /// Saves a picture of the window to the directory that a developer names in KINOVANE_DESK_PICTURES.
    static void picture(QWidget& window, const std::string& name) {
        QCoreApplication::processEvents(); // What was added is shown and laid out.
        if (const char* pictures = std::getenv("KINOVANE_DESK_PICTURES"))
            EXPECT_TRUE(window.grab().save(textOf(fs::path(pictures) / (name + ".png"))));
    }

    const TemporaryDirectory directory_;
    const Variable library_{"VISTREL_LIBRARY", directory_ / "library"};
    DeskWindow window_;
};

/// A window whose film tool never ends by itself.
class DeskWithAWaitingFilmTool : public Desk {
  protected:
    DeskWithAWaitingFilmTool() : Desk("waiting_program") {}
};

/// A window whose importer never ends by itself.
class DeskWithAWaitingImporter : public Desk {
  protected:
    DeskWithAWaitingImporter() : Desk("film", "waiting_program") {}
};

TEST_F(Desk, ShowsTheSampleFilm) {
    open(sampleFilm() / "run.json");
    EXPECT_EQ(window_.windowTitle(), "A Lamp for the Late Ferry");
    expectText("title", "A Lamp for the Late Ferry");
    expectText("pill", "Delivered  ·  Completed");
    const auto& shots = find<QListWidget>("shots");
    ASSERT_EQ(shots.count(), 7);
    EXPECT_EQ(shots.item(3)->text(), "shot-04  ·  Accepted\n0:07.6  ·  1.1 s");
    EXPECT_EQ(shots.item(3)->icon().availableSizes(), QList{QSize(480, 270)});
    EXPECT_EQ(window_.findChildren<QLabel*>("done").size(), 10);
    EXPECT_TRUE(find<QPushButton>("goOn").isEnabled());
    EXPECT_FALSE(find<QPushButton>("stop").isEnabled());
}

TEST_F(Desk, ListsTheApprovalsInTheOrderInWhichTheProjectAsks) {
    open(sampleFilm() / "run.json");
    QStringList gates;
    for (const QLabel* label : window_.findChildren<QLabel*>("strong"))
        gates << label->text();
    EXPECT_EQ(gates.join(", ").toStdString(),
              "Treatment, Production plan, Keyframes, Rough cut, Final master, Delivery");
}

TEST_F(Desk, ShowsTextOfDocumentsAsPlainText) {
    open(sampleFilm() / "run.json");
    for (const QLabel* label : window_.findChildren<QLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
}

TEST_F(Desk, FitsWindowsOfSeveralSizes) {
    open(sampleFilm() / "run.json");
    for (const QSize size : {QSize(900, 640), QSize(1400, 900)}) {
        SCOPED_TRACE(size.width());
        window_.resize(size);
        QCoreApplication::processEvents();
        EXPECT_EQ(window_.size(), size);
        for (const QWidget* widget : window_.findChildren<QWidget*>()) {
            const auto* label = qobject_cast<const QLabel*>(widget);
            if ((label == nullptr && qobject_cast<const QPushButton*>(widget) == nullptr) ||
                !widget->isVisible())
                continue;
            const QRect area(widget->mapTo(&window_, QPoint()), widget->size());
            const QString text = label != nullptr ? label->text() : widget->objectName();
            EXPECT_TRUE(window_.rect().contains(area)) << text.toStdString();
            if (label != nullptr && label->wordWrap())
                EXPECT_GE(widget->height(), widget->heightForWidth(widget->width())) << text.toStdString();
            else
                EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << text.toStdString();
        }
        EXPECT_GT(qGray(window_.grab().toImage().pixel(1, 1)), 200); // Light, whatever the desktop is.
        picture(window_, "film-" + std::to_string(size.width()) + "x" + std::to_string(size.height()));
    }
}

TEST_F(Desk, ShowsWhyAFilmCannotBeLoaded) {
    const std::string missing = directory_ / "missing";
    window_.production().open(missing);
    expectText("failure", "No run.json exists at " + missing + ".");
    EXPECT_FALSE(find<QPushButton>("publish").isEnabled());
    picture(window_, "not-loaded");
}

TEST_F(Desk, TakesAFilmFromThePlanToTheDelivery) {
    open(plannedFilm());
    picture(window_, "plan");
    for (const char* gate : {"approve plan", "approve frames", "approve rough-cut", "approve delivery"}) {
        SCOPED_TRACE(gate);
        const auto waits = [&] { return window_.findChild<QPushButton*>(gate) != nullptr; };
        ASSERT_TRUE(waitUntil([&] { return !busy() && waits(); }));
        EXPECT_EQ(window_.findChildren<QPushButton*>(QRegularExpression("^approve ")).size(), 1);
        if (gate == std::string("approve rough-cut"))
            picture(window_, "rough-cut");
        click(gate);
        EXPECT_TRUE(busy());
        EXPECT_TRUE(waitUntil([&] { return !busy() && !waits(); }));
        click("goOn");
        EXPECT_FALSE(find<QPushButton>("goOn").isEnabled());
    }
    expectText("pill", "Done  ·  Completed");
    EXPECT_TRUE(waitUntil([this] { return !busy(); }));
    EXPECT_TRUE(find<QListWidget>("shots").item(2)->text().startsWith("shot-03  ·  Accepted\n0:03.3  ·  "));
    EXPECT_TRUE(find<QPlainTextEdit>().toPlainText().contains("\"ok\""));
}

TEST_F(Desk, ShowsWhatAnotherProgramChanged) {
    const fs::path run = plannedFilm();
    open(run);
    FilmToolClient(programPath("film")).approve(run, "plan", "n", "director").get();
    expectText("message", "Changed: Waiting for approval → In production, 1 approval");
}

TEST_F(Desk, KeepsShowingTheFailureOfAnOperation) {
    const fs::path run = plannedFilm();
    const std::string failure = "The projector has lost a reel. Try again after the intermission.";
    open(run);
    {
        const Variable misbehave("FILM_MISBEHAVE", "complain");
        click("goOn");
        expectText("failure", failure);
    }
    QSignalSpy loaded(&window_.production(), &Production::loaded);
    FilmToolClient(programPath("film")).approve(run, "plan", "n", "director").get();
    EXPECT_TRUE(waitUntil([&] { return !loaded.isEmpty(); }));
    expectText("failure", failure);

    const fs::path treatment = run.parent_path() / "treatment.json";
    fs::rename(treatment, directory_ / "treatment.json");
    std::ofstream(treatment).flush(); // Empty.
    EXPECT_TRUE(waitUntil([this] { return !window_.production().failure().startsWith("The projector"); }));
    EXPECT_TRUE(find<QLabel>("failure").text().startsWith("The film project could not be read: "));
    fs::rename(directory_ / "treatment.json", treatment);
    expectText("failure", failure);

    click("goOn"); // A new operation replaces it.
    EXPECT_FALSE(find<QLabel>("failure").isVisible());
    EXPECT_TRUE(waitUntil([this] { return !busy(); }));
    EXPECT_FALSE(find<QLabel>("failure").isVisible());
}

TEST_F(Desk, PublishesTheSampleFilm) {
    open(copyOfTheSampleFilm());
    click("publish");
    EXPECT_EQ(find<QListWidget>("findings").item(0)->text(), "✓  The documents are complete.");
    click("startPublish");
    expectText("publishStep",
               "Published. Vistrel has the film as vistrel_film-lamp-for-the-late-ferry_218bdb85291f.");
    EXPECT_EQ(find<QProgressBar>().value(), 59);
    EXPECT_TRUE(fs::exists(directory_ / "library/vistrel_film-lamp-for-the-late-ferry_218bdb85291f"));
    picture(find<QDialog>(), "published");
    click("cancelPublish");
    EXPECT_TRUE(waitUntil([this] { return window_.findChild<QDialog*>() == nullptr; }));
}

TEST_F(Desk, ShowsWhyAFilmCannotBePublished) {
    const fs::path run = copyOfTheSampleFilm();
    fs::remove(directory_ / "film/poster.png");
    open(run);
    click("publish");
    click("startPublish");
    expectText("publishStep", "The handoff artifact is missing: poster.png");
    expectText("failure", "The handoff artifact is missing: poster.png");
    click("cancelPublish");
}

TEST_F(Desk, DoesNotPublishAFilmWithoutAPlan) {
    const fs::path run = copyOfTheSampleFilm();
    fs::remove(directory_ / "film/production-plan.json");
    open(run);
    click("publish");
    EXPECT_TRUE(find<QListWidget>("findings").item(0)->text().startsWith("✗"));
    EXPECT_FALSE(find<QPushButton>("startPublish").isEnabled());
    click("cancelPublish");
}

TEST_F(Desk, ShowsTheWarningsOfPreflight) {
    open(plannedFilm());
    click("publish");
    EXPECT_TRUE(find<QListWidget>("findings").item(0)->text().startsWith("!"));
    EXPECT_TRUE(find<QPushButton>("startPublish").isEnabled());
    picture(find<QDialog>(), "preflight");
    click("cancelPublish");
}

TEST_F(DeskWithAWaitingFilmTool, StopsIt) {
    open(sampleFilm() / "run.json");
    clickGoOnAndWaitForOutput("waiting\n");
    EXPECT_FALSE(find<QPushButton>("publish").isEnabled());
    click("stop");
    expectText("failure", "waiting_program: stopped at the user's request");
    EXPECT_FALSE(busy());
    EXPECT_TRUE(find<QPushButton>("goOn").isEnabled());
    EXPECT_EQ(countProcess().children, 0U);
    picture(window_, "stopped");
}

TEST_F(DeskWithAWaitingFilmTool, ClosesOnceItHasEnded) {
    open(sampleFilm() / "run.json");
    clickGoOnAndWaitForOutput("waiting\n");
    EXPECT_FALSE(window_.close());
    EXPECT_FALSE(find<QPushButton>("open").isEnabled());
    EXPECT_TRUE(waitUntil([this] { return !window_.isVisible(); }));
    EXPECT_TRUE(window_.production().idle());
    EXPECT_EQ(countProcess().children, 0U);
}

TEST_F(DeskWithAWaitingImporter, CancelsThePublish) {
    open(copyOfTheSampleFilm());
    click("publish");
    click("startPublish");
    expectText("publishStep", "Vistrel checks the film …");
    EXPECT_EQ(find<QPushButton>("cancelPublish").text(), "Cancel");
    picture(find<QDialog>(), "publishing");
    click("cancelPublish");
    expectText("publishStep", "waiting_program: stopped at the user's request");
    EXPECT_EQ(find<QPushButton>("cancelPublish").text(), "Close");
    EXPECT_EQ(countProcess().children, 0U);
}

TEST_F(DeskWithAWaitingImporter, CancelsThePublishWhoseDialogIsClosed) {
    open(copyOfTheSampleFilm());
    click("publish");
    click("startPublish");
    expectText("publishStep", "Vistrel checks the film …");
    find<QDialog>().reject();
    expectText("failure", "waiting_program: stopped at the user's request");
    EXPECT_EQ(countProcess().children, 0U);
}

} // namespace
} // namespace kinovane::test

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    const QApplication application(count, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    applyDeskStyle();
    return RUN_ALL_TESTS();
}
