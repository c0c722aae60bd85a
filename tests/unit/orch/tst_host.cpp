#include "SettingsHome.h"

#include "app/Platform.h"
#include "orch/Gateway.h"
#include "orch/HostIdentity.h"
#include "orch/ProcessList.h"
#include "support/Rows.h"
#include "unit/Files.h"

#include <linux/rtnetlink.h>
#include <sys/socket.h>

using State = RouteChunk::State;

namespace {

template <typename Record>
QByteArray bytesOf(const Record& record)
{
    return QByteArray(reinterpret_cast<const char*>(&record), sizeof record);
}

QByteArray attribute(quint16 type, const QByteArray& payload, int length = -1)
{
    const rtattr header{quint16(length < 0 ? 4 + payload.size() : length), type};
    QByteArray bytes = bytesOf(header) + payload;
    return bytes.append(QByteArray((4 - bytes.size() % 4) % 4, '\0'));
}

QByteArray message(quint16 type, const QByteArray& payload, quint16 flags = NLM_F_MULTI,
                   int length = -1)
{
    const quint32 size(length < 0 ? 16 + payload.size() : length);
    return bytesOf(nlmsghdr{size, type, flags, 0, 0}) + payload;
}

QByteArray route(quint8 family, quint8 table, const QByteArray& attributes)
{
    rtmsg body{};
    body.rtm_family = family;
    body.rtm_table = table;
    return message(RTM_NEWROUTE, bytesOf(body) + attributes);
}

const QByteArray kRouter = QByteArrayLiteral("\xc0\xa8\x01\x01"); // 192.168.1.1 on the wire
const QByteArray kOther = QByteArrayLiteral("\x0a\x00\x00\x01");

QByteArray via(const QByteArray& gateway)
{
    return attribute(RTA_OIF, QByteArray("\2\0\0\0", 4)) + attribute(RTA_GATEWAY, gateway);
}

QByteArray done()
{
    return message(NLMSG_DONE, QByteArray(4, '\0'));
}

} // namespace

/// What the client learns of the machine: its identity, its processes, its way out.
class HostTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { platform().fileRoot.clear(); }

    void systems()
    {
        // "processes": number and name of each. 77 has no command line that could be opened.
        const auto row = checked([](const char* system, const QString& deviceId,
                                    const QString& distribution, const QString& processes) {
            platform().fileRoot = QFINDTESTDATA("data/") + system;
            QCOMPARE(Util::getDeviceId(), deviceId);
            const QByteArray release = readFile(platform().hostFile("/etc/lsb-release"));
            QCOMPARE(hostidentity::distributionId(release), distribution);
            QStringList names;
            for (const Util::ProcessInfo& process : Util::getProcessInfo())
                names << QString("%1 %2").arg(process.pid).arg(process.name);
            names.sort();
            QCOMPARE(names.join(", "), processes);
        });
        row("Ubuntu", "ubuntu", "3F1C9D1A-5B1E-4A7E-9C0D-7E2A8F6B4C21", "ubuntu",
            "1 /sbin/init, 1500 , 2 kthreadd, 814 /opt/client/tarvelin_datapath, 902 (sd-pam");
        row("UOS", "uos", "9E0C7D54-2A61-4F0B-8B1C-D3C1F2A4E5B6", "uosLinux",
            "1 /usr/lib/systemd/systemd, 78 ");
        row("Kylin", "kylin", "5C1E2D3F-02", "kylinLinux", "");
        row("no UUID", "debian", "", "ubuntu", "");
        row("no file at all", "no such system", "", "ubuntu", "");

        // The first answer stays: without the file "unknown", later with it too.
        for (const char* system : {"debian", "uos"}) {
            platform().fileRoot = QFINDTESTDATA("data/") + system;
            QCOMPARE(Util::getDistributionId(), QString("unknown"));
        }
    }

    void architecture()
    {
        QCOMPARE(hostidentity::cpuArchitecture("x86_64\n"), QString("X86"));
        QCOMPARE(hostidentity::cpuArchitecture("aarch64\n"), QString("ARM"));
        QCOMPARE(hostidentity::cpuArchitecture("mips64\n"), QString("unknown"));
        const QString own = QSysInfo::currentCpuArchitecture();
        QCOMPARE(Util::getCpuArchitecture(),
                 hostidentity::cpuArchitecture(own == "arm64" ? "aarch64" : own.toLatin1()));
    }

    void serial()
    {
        // None, too short, too long, and one to be kept.
        for (const int size : {0, 31, 33, 32}) {
            const QString stored(size, 'A');
            ConfigUtil::writeValue(ConfigUtil::SERIAL, stored);
            const QString serial = Util::getSerial();
            QCOMPARE(serial == stored, size == 32);
            QVERIFY(QRegularExpression("\\A[0-9A-E]{32}\\z").match(serial).hasMatch());
            QCOMPARE(Util::getSerial(), serial);
            QCOMPARE(ConfigUtil::savedText(ConfigUtil::SERIAL), serial);
        }
    }

    void parses()
    {
        const auto row = checked([](const QByteArray& dump, const QByteArray& gateway) {
            QCOMPARE(bytesOf(parseDefaultGateway(dump)).toHex(), gateway.toHex());
        });
        const QByteArray none(4, '\0');
        const auto ours = [](const QByteArray& attributes) {
            return route(AF_INET, RT_TABLE_MAIN, attributes);
        };
        row("empty", "", none);
        row("plain", ours(via(kRouter)) + done(), kRouter);
        row("after other tables and families",
            route(AF_INET, RT_TABLE_LOCAL, via(kOther)) +
                route(AF_INET6, RT_TABLE_MAIN, attribute(RTA_GATEWAY, QByteArray(16, 'x'))) +
                message(RTM_NEWLINK, QByteArray(40, 'x')) + ours(via(kRouter)),
            kRouter);
        row("the first main route decides",
            ours(attribute(RTA_OIF, QByteArray(4, '\1'))) + ours(via(kOther)), none);
        row("first gateway of several", ours(via(kRouter) + via(kOther)), kRouter);
        row("padded attribute before it", ours(attribute(RTA_PRIORITY, "ab") + via(kRouter)),
            kRouter);
        row("attribute of length 0", ours(attribute(RTA_OIF, "1234", 0) + via(kRouter)), none);
        row("attribute beyond the message",
            ours(attribute(RTA_GATEWAY, kRouter, 400)) + QByteArray(500, 1), none);
        row("short gateway", ours(attribute(RTA_GATEWAY, "ab")), none);
        const QByteArray zeros(20, '\0');
        row("message of length 0",
            message(RTM_NEWROUTE, zeros, NLM_F_MULTI, 0) + ours(via(kRouter)), none);
        row("huge length", message(RTM_NEWROUTE, zeros, NLM_F_MULTI, -2147483647), none);
        row("route message cut short", message(RTM_NEWROUTE, QByteArray(8, '\2')), none);
    }

    void everyTruncationIsSafe()
    {
        const QByteArray dump = route(AF_INET6, RT_TABLE_MAIN, via(kOther)) +
                                route(AF_INET, RT_TABLE_MAIN, via(kRouter)) + done();
        // Copies of exactly the length, so that reading beyond the end is seen by a sanitizer.
        for (int size = 0; size <= dump.size(); ++size) {
            const QByteArray cut(dump.constData(), size);
            const bool whole = size >= dump.size() - done().size();
            QCOMPARE(parseDefaultGateway(cut) != 0, whole);
            checkRouteChunk(cut);
        }
        for (int at = 0; at < dump.size(); ++at) {
            QByteArray damaged = dump;
            damaged[at] = char(0xff);
            parseDefaultGateway(damaged);
            checkRouteChunk(damaged);
        }
    }

    void chunks()
    {
        const auto row = checked([](const QByteArray& chunk, State state, int type) {
            QCOMPARE(checkRouteChunk(chunk).state, state);
            QCOMPARE(checkRouteChunk(chunk).messageType, type);
        });
        const QByteArray one = route(AF_INET, RT_TABLE_MAIN, via(kRouter));
        row("goes on", one + one, State::More, RTM_NEWROUTE);
        row("done alone", done(), State::Done, NLMSG_DONE);
        row("done behind routes", one + done(), State::Done, NLMSG_DONE);
        row("not multi-part", message(RTM_NEWROUTE, QByteArray(12, '\0'), 0), State::Done,
            RTM_NEWROUTE);
        row("nothing", "", State::Invalid, 0);
        row("short", one.left(15), State::Invalid, 0);
        row("length below a header", message(RTM_NEWROUTE, "", NLM_F_MULTI, 15), State::Invalid,
            RTM_NEWROUTE);
        row("length beyond the data", one.left(40), State::Invalid, RTM_NEWROUTE);
        row("error", message(NLMSG_ERROR, QByteArray(20, '\0')), State::Invalid, NLMSG_ERROR);
    }

    void facing()
    {
        const QVector<HostInterface> interfaces{
            {true, true, {{0x7F000001, 8}}},
            {true, false, {{0x0A080002, 32}, {0x08080807, -1}}},
            {true, false, {{0xAC100005, 16}, {0xC0A80114, 24}}},
        };
        QCOMPARE(addressFacing(interfaces, 0xC0A80101), QString("192.168.1.20"));
        QCOMPARE(addressFacing(interfaces, 0x0A080002), QString("10.8.0.2")); // only for itself
        for (const quint32 none : {0x7F000001U, 0x08080808U, 0U}) // loopback, no subnet, no gateway
            QCOMPARE(addressFacing(interfaces, none), QString());
    }

    void agreesWithTheKernelsTable()
    {
        const QByteArray firstRoute = readFile("/proc/net/route").split('\n').value(1);
        // The table prints the value as it lies in memory, in network byte order.
        const quint32 expected = firstRoute.split('\t').value(2).toUInt(nullptr, 16);
        if (firstRoute.isEmpty())
            QSKIP("no route here");
        bool ok = false;
        QCOMPARE(Util::getGateway(&ok), expected);
        QVERIFY(ok);
        QCOMPARE(Util::getNICIp(), addressFacing(hostInterfaces(), qFromBigEndian(expected)));
    }

private:
    SettingsHome m_home;
};

QTEST_GUILESS_MAIN(HostTest)
#include "tst_host.moc"
