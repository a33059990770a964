#pragma once

#include <QString>
#include <QStringList>

namespace ostrelle::app {

// Names the program that asks for the administrator's password; tests point it at a stand-in.
inline constexpr const char* elevatorVariable = "OSTRELLE_PKEXEC";
inline constexpr const char* defaultElevator = "pkexec";
inline constexpr const char* accessRulePath = "/etc/udev/rules.d/70-ostrelle.rules";

// The one command that installs the udev rule letting the user at the seat read touchpads, and
// makes udev apply it at once: as a program with arguments to run, and as text to paste.
struct AccessRuleCommand {
    QString program;
    QStringList arguments;
    QString text;
};

// From the rule file's text (its comments are left out) and the program to run it through.
AccessRuleCommand accessRuleCommand(const QString& ruleText, const QString& elevator);
// The rule shipped with the application, through OSTRELLE_PKEXEC or pkexec.
AccessRuleCommand shippedAccessRuleCommand();

// Quotes one word for a POSIX shell.
QString shellQuoted(const QString& word);

}  // namespace ostrelle::app
