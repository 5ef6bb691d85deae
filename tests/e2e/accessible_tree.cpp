#include "e2e/accessible_tree.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>

namespace orlix::e2e {

namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* componentInterface = "org.a11y.atspi.Component";
constexpr const char* valueInterface = "org.a11y.atspi.Value";
constexpr int showingStateBit = 25;  // ATSPI_STATE_SHOWING
constexpr int callLimitMs = 30000;
constexpr int deepest = 30;

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

}  // namespace

AccessibleTree::AccessibleTree(const QString& busAddress)
    : connectionName_(QStringLiteral("accessible tree")),
      bus_(QDBusConnection::connectToBus(busAddress, connectionName_)),
      service_(busAddress) {
    bus_.registerObject(QStringLiteral("/org/a11y/bus"), &service_, QDBusConnection::ExportAllInvokables);
    bus_.registerService(QStringLiteral("org.a11y.Bus"));
}

AccessibleTree::~AccessibleTree() {
    QDBusConnection::disconnectFromBus(connectionName_);
}

QVariant AccessibleTree::property(const QString& path, const char* interface, const char* name) const {
    QDBusMessage call = QDBusMessage::createMethodCall(
        program_, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << text(interface) << text(name);
    const QDBusMessage reply = bus_.call(call, QDBus::Block, callLimitMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
    return reply.arguments().constFirst().value<QDBusVariant>().variant();
}

// The program is whoever answers at the accessibility root and is not this connection.
QString AccessibleTree::programOnBus() const {
    const QStringList names = bus_.interface()->registeredServiceNames().value();
    for (const QString& name : names) {
        if (!name.startsWith(u':') || name == bus_.baseService()) continue;
        QDBusMessage call =
            QDBusMessage::createMethodCall(name, QStringLiteral("/org/a11y/atspi/accessible/root"),
                                           text(accessibleInterface), QStringLiteral("GetRoleName"));
        if (bus_.call(call, QDBus::Block, callLimitMs).type() == QDBusMessage::ReplyMessage) return name;
    }
    return {};
}

void AccessibleTree::walk(const QString& path, std::vector<AccessibleNode>& into, int depth) const {
    if (depth > deepest) return;
    const auto ask = [&](const char* interface, const char* method, const QVariantList& arguments = {}) {
        QDBusMessage call = QDBusMessage::createMethodCall(program_, path, text(interface), text(method));
        call.setArguments(arguments);
        return bus_.call(call, QDBus::Block, callLimitMs);
    };

    AccessibleNode node;
    node.path = path;
    node.name = property(path, accessibleInterface, "Name").toString();
    node.role = ask(accessibleInterface, "GetRoleName").arguments().value(0).toString();
    const QDBusMessage states = ask(accessibleInterface, "GetState");
    if (states.type() == QDBusMessage::ReplyMessage && !states.arguments().isEmpty()) {
        QList<uint> words;
        states.arguments().constFirst().value<QDBusArgument>() >> words;
        node.isShowing = !words.isEmpty() && (words.constFirst() >> showingStateBit & 1U) != 0;
    }
    const QDBusMessage extents = ask(componentInterface, "GetExtents", {0U});  // 0: on the screen
    if (extents.type() == QDBusMessage::ReplyMessage && !extents.arguments().isEmpty()) {
        const auto argument = extents.arguments().constFirst().value<QDBusArgument>();
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
        argument.beginStructure();
        argument >> x >> y >> width >> height;
        argument.endStructure();
        node.area = QRect(x, y, width, height);
    }
    into.push_back(node);

    const QDBusMessage children = ask(accessibleInterface, "GetChildren");
    if (children.type() != QDBusMessage::ReplyMessage || children.arguments().isEmpty()) return;
    const auto list = children.arguments().constFirst().value<QDBusArgument>();
    QStringList paths;
    list.beginArray();
    while (!list.atEnd()) {
        QString program;
        QDBusObjectPath child;
        list.beginStructure();
        list >> program >> child;
        list.endStructure();
        paths << child.path();
    }
    list.endArray();
    for (const QString& child : std::as_const(paths))
        walk(child, into, depth + 1);
}

std::vector<AccessibleNode> AccessibleTree::nodes() {
    program_ = programOnBus();
    std::vector<AccessibleNode> all;
    if (!program_.isEmpty()) walk(QStringLiteral("/org/a11y/atspi/accessible/root"), all, 0);
    return all;
}

std::optional<AccessibleNode> AccessibleTree::find(const QString& name, const QString& role) {
    for (const AccessibleNode& node : nodes())
        if (node.isShowing && node.name == name && (role.isEmpty() || node.role == role)) return node;
    return std::nullopt;
}

std::optional<double> AccessibleTree::value(const AccessibleNode& node) const {
    const QVariant value = property(node.path, valueInterface, "CurrentValue");
    if (!value.isValid()) return std::nullopt;
    return value.toDouble();
}

QString AccessibleTree::description() {
    QString lines;
    for (const AccessibleNode& node : nodes())
        lines += QStringLiteral("%1 \"%2\" %3,%4 %5x%6%7\n")
                     .arg(node.role, node.name)
                     .arg(node.area.x())
                     .arg(node.area.y())
                     .arg(node.area.width())
                     .arg(node.area.height())
                     .arg(node.isShowing ? QString() : QStringLiteral(" (not showing)"));
    return lines;
}

}  // namespace orlix::e2e
