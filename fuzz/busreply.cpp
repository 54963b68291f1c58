// SPDX-License-Identifier: MIT
// Replies of the services on the message buses: NetworkManager, GeoClue, login1 and the
// notification service. An input describes the objects, the settings and the position that they
// tell, each value by a byte for its type and more for its contents. The bits of its first byte
// name the methods that answer with arbitrary values instead.
#include <array>
#include <limits>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include "fuzz/support.h"
#include "platform/bearer.h"
#include "platform/geoclue.h"
#include "platform/messagebus.h"
#include "platform/notifier.h"
#include "platform/sleepinhibitor.h"
#include "tests/support/privatebus.h"

using namespace Qt::StringLiterals;

using Interfaces = QMap<QString, QVariantMap>;
using Objects = QMap<QDBusObjectPath, Interfaces>;

namespace {

const QString manager = u"org.freedesktop.NetworkManager"_s;

/// Builds values from the bytes of an input. There is an end to every value: without more bytes all
/// of them are 0.
class Values
{
public:
    explicit Values(QByteArray input)
        : bytes(std::move(input))
    {}

    int number(int limit)
    {
        const auto byte = at < bytes.size() ? static_cast<uchar>(bytes.at(at++)) : uchar(0);
        return byte % limit;
    }

    QString text()
    {
        // The names that the program looks for, and others.
        static const std::array<QLatin1StringView, 19> texts{
            ""_L1,
            "State"_L1,
            "Uuid"_L1,
            "Type"_L1,
            "Default"_L1,
            "Devices"_L1,
            "uuid"_L1,
            "type"_L1,
            "802-3-ethernet"_L1,
            "timestamp"_L1,
            "ipv4"_L1,
            "method"_L1,
            "shared"_L1,
            "connection"_L1,
            "Latitude"_L1,
            "Longitude"_L1,
            "Accuracy"_L1,
            "Timestamp"_L1,
            "AvailableConnections"_L1,
        };
        const auto index = static_cast<std::size_t>(number(static_cast<int>(texts.size()) + 1));
        return index < texts.size() ? QString(texts.at(index)) : QString(longest, u'x');
    }

    QDBusObjectPath path()
    {
        static const std::array<QLatin1StringView, 4> paths{
            "/"_L1, "/org/freedesktop/NetworkManager/Settings/1"_L1,
            "/org/freedesktop/NetworkManager/Devices/1"_L1,
            "/org/freedesktop/GeoClue2/Client/1"_L1};
        return QDBusObjectPath(paths.at(static_cast<std::size_t>(number(paths.size()))));
    }

    QVariantMap map(int depth)
    {
        QVariantMap values;
        // Each byte is read in a statement of its own, because compilers evaluate arguments in
        // different orders.
        for (int count = number(mostEntries); count > 0; --count) {
            const QString key = text();
            values.insert(key, value(depth));
        }
        return values;
    }

    Interfaces interfaces(int depth)
    {
        static const std::array<QString, 4> names{
            manager + u".Settings.Connection"_s, manager + u".Device"_s,
            manager + u".Connection.Active"_s, u"connection"_s};
        Interfaces all;
        for (int count = number(mostEntries); count > 0; --count) {
            const QString &name = names.at(static_cast<std::size_t>(number(names.size())));
            all.insert(name, map(depth));
        }
        return all;
    }

    Objects objects(int depth)
    {
        Objects all;
        for (int count = number(mostEntries); count > 0; --count) {
            const QDBusObjectPath key = path();
            all.insert(key, interfaces(depth));
        }
        return all;
    }

    /// Returns a value of any type that Qt can send.
    QVariant value(int depth = deepest)
    {
        constexpr int simpleTypes = 12;
        constexpr int types = 18;
        switch (number(depth > 0 ? types : simpleTypes)) {
        case 0:
            return text();
        case 1:
            return static_cast<uint>(number(mostEntries));
        case 2:
            return -number(mostEntries);
        case 3:
            return std::array{0.0, 50.1, -999.0, std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity()}
                .at(static_cast<std::size_t>(number(5)));
        case 4:
            return number(2) == 1;
        case 5:
            return QVariant::fromValue(path());
        case 6:
            return QByteArray(number(longest), 'x');
        case 7: {
            const int size = number(mostEntries);
            return QStringList(size, text());
        }
        case 8:
            return std::numeric_limits<qulonglong>::max() - static_cast<qulonglong>(number(2));
        case 9:
            return QVariant::fromValue(static_cast<uchar>(number(longest)));
        case 10: {
            const int size = number(mostEntries);
            return QVariant::fromValue(QList<QDBusObjectPath>(size, path()));
        }
        case 11:
            return QVariant::fromValue(QDBusSignature(u"a{oa{sa{sv}}}"_s));
        case 12:
            return QVariant::fromValue(QDBusVariant(value(depth - 1)));
        case 13:
            return map(depth - 1);
        case 14:
            return QVariant::fromValue(interfaces(depth - 1));
        case 15:
            return QVariant::fromValue(objects(depth - 1));
        case 16:
            return QVariantList{value(depth - 1), value(depth - 1)};
        default:
            return QVariant::fromValue(QList<QVariantMap>{map(depth - 1)});
        }
    }

    QVariantList values()
    {
        QVariantList all;
        for (int count = number(4); count > 0; --count)
            all.append(value());
        return all;
    }

private:
    static constexpr int longest = 200;
    static constexpr int mostEntries = 5;
    static constexpr int deepest = 4;

    QByteArray bytes;
    qsizetype at = 0;
};

QDBusMessage replyTo(const QDBusMessage &call, const QVariantList &results)
{
    QDBusMessage reply = call.createReply();
    reply.setArguments(results);
    return reply;
}

/// Lets all messages arrive that are on their way, and the calls that follow from them.
void deliver()
{
    constexpr int longestChain = 12;
    for (int round = 0; round < longestChain; ++round) {
        bool hasAnswered = false;
        const MessageBus::Call ping{u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                    u"org.freedesktop.DBus"_s, u"GetId"_s};
        MessageBus::system().call(QCoreApplication::instance(), ping, u"s"_s,
                                  [&hasAnswered](const QVariantList &) { hasAnswered = true; });
        while (!hasAnswered)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// The services of one private bus, which is the system bus and the session bus of the program.
struct World
{
    World()
    {
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toUtf8());
        qDBusRegisterMetaType<Interfaces>();
        qDBusRegisterMetaType<Objects>();
        qDBusRegisterMetaType<QList<QVariantMap>>();
    }

    PrivateBus bus;
    MadeUpService network{bus.address(), manager, u"/org/freedesktop"_s};
    MadeUpGeoClue geoClue{bus.address()};
    MadeUpService login{bus.address(), u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s};
    MadeUpService notifications{bus.address(), u"org.freedesktop.Notifications"_s,
                                u"/org/freedesktop/Notifications"_s};
};

/// Makes a method answer with what `values` describe, or with an error.
void spoil(MadeUpService &service, const QString &method, Values &values)
{
    const bool isError = values.number(8) == 0;
    const QVariantList results = values.values();
    service.answers[method] = [isError, results](const QDBusMessage &call) {
        return isError ? call.createErrorReply(u"org.freedesktop.DBus.Error.Failed"_s, u"no"_s)
                       : replyTo(call, results);
    };
}

/// Starts everything that talks to the services, and lets it come to its end.
void use(World &world)
{
    QNetworkConfigurationManager configurations;
    configurations.updateConfigurations();
    GeoClue geoClue(MessageBus::system());
    QObject::connect(&geoClue, &GeoClue::positioned, &geoClue, FuzzSupport::requireSoundPosition);
    geoClue.setWanted(true);
    SleepInhibitor inhibitor(MessageBus::system());
    inhibitor.hold(u"fuzzing"_s);
    Notifier notifier(MessageBus::session());
    notifier.show({.summary = u"fuzzing"_s});
    deliver();
    world.geoClue.locate(50.1, 14.2, 1);
    QNetworkSession session(configurations.defaultConfiguration());
    session.open();
    deliver();
    geoClue.setWanted(false);
    notifier.close();
    deliver();
}

MadeUpService::Answer answering(const QVariantList &results)
{
    return [results](const QDBusMessage &call) {
        return replyTo(call, results);
    };
}

/// Makes all methods answer: with the right types, and the contents that `values` describe.
void answer(World &world, Values &values)
{
    const Objects objects = values.objects(3);
    const Interfaces settings = values.interfaces(3);
    const QVariant property = values.value();
    const QVariantMap location = values.map(2);
    const MadeUpService::Answer refusal = [](const QDBusMessage &call) {
        // A bus takes no further calls from a connection with too many that were never answered.
        return call.createErrorReply(u"org.freedesktop.DBus.Error.AccessDenied"_s, u"no"_s);
    };
    world.network.answers[u"GetManagedObjects"_s] = answering({QVariant::fromValue(objects)});
    world.network.answers[u"GetSettings"_s] = answering({QVariant::fromValue(settings)});
    world.network.answers[u"ActivateConnection"_s] = refusal;
    world.network.answers[u"Get"_s] = [property](const QDBusMessage &call) {
        constexpr uint activated = 2;
        const bool isState = call.arguments().value(1) == u"State"_s;
        const QVariant value = isState ? QVariant(activated) : property;
        return replyTo(call, {QVariant::fromValue(QDBusVariant(value))});
    };
    world.login.answers[u"Inhibit"_s] = refusal;
    world.notifications.answers[u"Notify"_s] = refusal;
    const MadeUpService::Answer rightAnswer = world.geoClue.answers[u"GetAll"_s];
    world.geoClue.answers[u"GetAll"_s] = [rightAnswer, location](const QDBusMessage &call) {
        QVariantMap all = rightAnswer(call).arguments().constFirst().toMap();
        all.insert(location);
        return replyTo(call, {all});
    };
}

} // namespace

int LLVMFuzzerInitialize(int * /*count*/, char *** /*arguments*/)
{
    FuzzSupport::startApplication();
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static World world;
    const QByteArray input = FuzzSupport::bytesOf(data, size);
    if (input.isEmpty())
        return -1;
    const auto spoiled = static_cast<uchar>(input.front());
    Values values(input.mid(1));
    const auto rightAnswers = world.geoClue.answers;
    answer(world, values);
    const std::array<std::pair<MadeUpService *, QString>, 8> methods{{
        {&world.network, u"GetManagedObjects"_s},
        {&world.network, u"GetSettings"_s},
        {&world.network, u"Get"_s},
        {&world.network, u"ActivateConnection"_s},
        {&world.geoClue, u"GetClient"_s},
        {&world.geoClue, u"GetAll"_s},
        {&world.login, u"Inhibit"_s},
        {&world.notifications, u"Notify"_s},
    }};
    for (std::size_t index = 0; index < methods.size(); ++index) {
        if ((spoiled >> index & 1) != 0)
            spoil(*methods.at(index).first, methods.at(index).second, values);
    }
    use(world);
    world.geoClue.answers = rightAnswers;
    for (const auto &[service, method] : methods)
        service->heard.clear();
    return 0;
}
