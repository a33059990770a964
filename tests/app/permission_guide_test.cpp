#include "app/permission_guide.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <fstream>

#include "engine/engine_fixture.h"
#include "support/scratch_folder.h"
#include "testing/temporary_folder.h"

namespace ostrelle::app {
namespace {

constexpr const char* noAccess = "No permission to read the touchpad.";

// An engine whose touch source refuses to start, as without access to /dev/input.
struct RefusedRig : testing::EngineRig {
    RefusedRig() { source.refuse = TouchSourceError{noAccess}; }
};

struct GuideRig : RefusedRig {
    // Every label's text the guide shows now.
    QString shown() const {
        QString all;
        for (QLabel* label : guide.findChildren<QLabel*>()) {
            if (label->isVisibleTo(&guide)) all += label->text() + "\n";
        }
        return all;
    }
    QPushButton& button(const char* name) const {
        for (QPushButton* button : guide.findChildren<QPushButton*>()) {
            if (button->accessibleName() == QLatin1String(name)) return *button;
        }
        throw std::runtime_error(name);
    }
    PermissionGuide guide{engine()};
    QSignalSpy granted{&guide, &PermissionGuide::granted};
};

TEST(PermissionGuide, ReportsGrantedOnceTheEngineRetrySucceeds) {
    GuideRig rig;
    EXPECT_TRUE(rig.shown().contains(noAccess));
    rig.queue.advanceTo(GestureEngine::startRetryDelay);  // still refused
    EXPECT_EQ(rig.granted.size(), 0);
    rig.source.refuse.reset();
    rig.queue.advanceTo(2 * GestureEngine::startRetryDelay);
    EXPECT_EQ(rig.granted.size(), 1);
    EXPECT_TRUE(rig.shown().contains("Access granted")) << rig.shown().toStdString();
}

// The password program replaced by a script that keeps its arguments and ends as told.
TEST(PermissionGuide, InstallsTheRuleThroughThePasswordProgram) {
    struct Row {
        const char* name;
        const char* script;  // "" for a program that does not exist
        bool accessAfter;
        const char* status;
        int granted;
    };
    const Row rows[] = {
        {"installed", "exit 0", true, "Access granted", 1},
        {"prompt cancelled", "exit 126", false, "prompt was cancelled", 0},
        {"password refused", "exit 127", false, "not accepted", 0},
        {"rule not written", "echo 'cannot create /etc/udev' >&2; exit 2", false,
         "failed (exit code 2). cannot create /etc/udev", 0},
        {"no password program", "", false, "could not be run", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ScratchFolder folder;
        const auto program = folder / "pkexec";
        const auto arguments = folder / "arguments";
        if (*row.script != '\0') {
            std::ofstream(program) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" << arguments.string() << "'\n"
                                   << row.script << "\n";
            std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        }
        qputenv(elevatorVariable, QByteArray::fromStdString(program.string()));
        GuideRig rig;
        qunsetenv(elevatorVariable);
        if (row.accessAfter) rig.source.refuse.reset();  // the rule took effect; no clock moves

        rig.button("Install Access Rule").click();
        EXPECT_TRUE(QTest::qWaitFor([&] { return rig.shown().contains(row.status); }, 10'000))
            << rig.shown().toStdString();
        EXPECT_EQ(rig.granted.size(), row.granted);
        EXPECT_EQ(rig.button("Install Access Rule").isEnabled(), row.granted == 0) << "ready to try again";
        if (*row.script == '\0') continue;
        const std::string passed = testing::readText(arguments);
        EXPECT_NE(passed.find("ENV{ID_INPUT_TOUCHPAD}==\"1\", TAG+=\"uaccess\"\n"), std::string::npos)
            << passed;
        EXPECT_EQ(passed.find("# "), std::string::npos) << "comments left out";
        // The text to copy names the same program and rule.
        EXPECT_TRUE(rig.guide.findChild<QPlainTextEdit*>()->toPlainText().contains("ID_INPUT_TOUCHPAD"));
    }
}

}  // namespace
}  // namespace ostrelle::app
