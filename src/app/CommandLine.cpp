#include "app/CommandLine.h"

#include "app/Deployment.h"
#include "app/Product.h"

namespace {

QString help()
{
    return QStringLiteral(
        "Usage: veltaro [--help | --version]\n"
        "\n"
        "Opens the client of the remote-access service. When one runs already, its "
        "window is\nshown instead.\n"
        "\n"
        "  --help     print this and exit\n"
        "  --version  print the version and the service that it was built for, and "
        "exit\n");
}

QString version()
{
    QString text = QStringLiteral("%1 %2\n").arg(QLatin1String(product::kName),
                                                 QLatin1String(product::kVersion));
    const auto add = [&text](const char* name, const QString& value) {
        text += QStringLiteral("%1 %2\n").arg(QLatin1String(name), -16).arg(value);
    };
    add("Maker", deployment::makerName());
    add("Lookup", deployment::lookupPrimary());
    add("Lookup, backup", deployment::lookupBackup());
    for (const bool chinese : {false, true}) {
        add(chinese ? "Agreement, zh" : "Agreement, en", deployment::userAgreementUrl(chinese));
        add(chinese ? "Privacy, zh" : "Privacy, en", deployment::privacyPolicyUrl(chinese));
    }
    add("Ping targets", deployment::pingTargets().join(QLatin1Char(' ')));
    return text;
}

} // namespace

QString commandline::answer(const QStringList& arguments)
{
    if (arguments.contains(QStringLiteral("--help")))
        return help();
    return arguments.contains(QStringLiteral("--version")) ? version() : QString();
}
