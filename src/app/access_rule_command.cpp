#include "app/access_rule_command.h"

#include <QFile>
#include <algorithm>

#include "app/resources.h"

namespace ostrelle::app {
namespace {

// The rule's lines come as arguments, so no rule text is ever parsed by a shell. The trigger
// makes udev hand the access to the logged-in user right away, without logging out.
constexpr const char* installScript =
    "set -e; mkdir -p /etc/udev/rules.d; printf \"%s\\n\" \"$@\" > %1; "
    "if command -v udevadm >/dev/null; then udevadm control --reload-rules; "
    "udevadm trigger --subsystem-match=input --subsystem-match=misc; fi";
constexpr const char* shippedRule = ":/70-ostrelle.rules";

}  // namespace

QString shellQuoted(const QString& word) {
    static const QString safe = QStringLiteral("@%+=:,./-_");
    const bool plain = !word.isEmpty() && std::all_of(word.begin(), word.end(), [](QChar c) {
        return (c.unicode() < 128 && c.isLetterOrNumber()) || safe.contains(c);
    });
    if (plain) return word;
    QString quoted = word;
    quoted.replace(QLatin1Char('\''), QLatin1String("'\\''"));
    return QLatin1Char('\'') + quoted + QLatin1Char('\'');
}

AccessRuleCommand accessRuleCommand(const QString& ruleText, const QString& elevator) {
    AccessRuleCommand command;
    command.program = elevator;
    command.arguments = {QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                         QString::fromLatin1(installScript).arg(QLatin1String(accessRulePath)),
                         QStringLiteral("sh")};
    for (const QString& line : ruleText.split(QLatin1Char('\n'))) {
        const QString trimmed = line.trimmed();
        if (!trimmed.isEmpty() && !trimmed.startsWith(QLatin1Char('#'))) command.arguments << trimmed;
    }
    QStringList words{shellQuoted(elevator)};
    for (const QString& argument : command.arguments) words << shellQuoted(argument);
    command.text = words.join(QLatin1Char(' '));
    return command;
}

AccessRuleCommand shippedAccessRuleCommand() {
    loadResources();
    QFile rule(QString::fromLatin1(shippedRule));
    const QString text = rule.open(QIODevice::ReadOnly) ? QString::fromUtf8(rule.readAll()) : QString();
    const QByteArray chosen = qgetenv(elevatorVariable);
    return accessRuleCommand(
        text, chosen.isEmpty() ? QString::fromLatin1(defaultElevator) : QString::fromLocal8Bit(chosen));
}

}  // namespace ostrelle::app
