#include "e2e/accessible_tree.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusVariant>

namespace orlix::e2e {

namespace {

constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* componentInterface = "org.a11y.atspi.Component";
constexpr const char* valueInterface = "org.a11y.atspi.Value";
constexpr int showingStateBit = 25;  // ATSPI_STATE_SHOWING
constexpr int callLimitMs = 30000;
constexpr int deepest = 30;

QString text(const char* latin1) {
    return QString::fromLatin1(latin1);
}

// Waits for the answer; what is no answer, or an empty one, is an invalid value.
QVariant answer(QDBusPendingCall& question) {
    question.waitForFinished();
    const QDBusMessage reply = question.reply();
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments().value(0) : QVariant();
}

QVariant propertyIn(QDBusPendingCall& question) {
    return answer(question).value<QDBusVariant>().variant();
}

bool isShowingIn(const QVariant& states) {
    if (!states.isValid()) return false;
    QList<uint> words;
    states.value<QDBusArgument>() >> words;
    return !words.isEmpty() && (words.constFirst() >> showingStateBit & 1U) != 0;
}

QRect areaIn(const QVariant& extents) {
    if (!extents.isValid()) return {};
    const auto argument = extents.value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return {x, y, width, height};
}

QStringList pathsIn(const QVariant& children) {
    QStringList paths;
    if (!children.isValid()) return paths;
    const auto list = children.value<QDBusArgument>();
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
    return paths;
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

QDBusPendingCall AccessibleTree::ask(const QString& path, const char* interface, const char* method,
                                     const QVariantList& arguments) const {
    QDBusMessage call = QDBusMessage::createMethodCall(program_, path, text(interface), text(method));
    call.setArguments(arguments);
    return bus_.asyncCall(call, callLimitMs);
}

QDBusPendingCall AccessibleTree::askProperty(const QString& path, const char* interface,
                                             const char* name) const {
    return ask(path, "org.freedesktop.DBus.Properties", "Get", {text(interface), text(name)});
}

// The program is whoever answers at the accessibility root and is not this connection.
QString AccessibleTree::programOnBus() const {
    const QStringList names = bus_.interface()->registeredServiceNames().value();
    for (const QString& name : names) {
        if (!name.startsWith(u':') || name == bus_.baseService()) continue;
        QDBusMessage call = QDBusMessage::createMethodCall(name, text(rootPath), text(accessibleInterface),
                                                           text("GetRoleName"));
        if (bus_.call(call, QDBus::Block, callLimitMs).type() == QDBusMessage::ReplyMessage) return name;
    }
    return {};
}

// All that is asked about a row of siblings is on its way before the first answer is waited for.
void AccessibleTree::walk(const QStringList& siblings, std::vector<AccessibleNode>& into, int depth) const {
    if (depth > deepest) return;
    struct Questions {
        QDBusPendingCall name;
        QDBusPendingCall role;
        QDBusPendingCall states;
        QDBusPendingCall extents;
        QDBusPendingCall children;
    };
    std::vector<Questions> asked;
    for (const QString& path : siblings)
        asked.push_back({askProperty(path, accessibleInterface, "Name"),
                         ask(path, accessibleInterface, "GetRoleName"),
                         ask(path, accessibleInterface, "GetState"),
                         ask(path, componentInterface, "GetExtents", {0U}),  // 0: on the screen
                         ask(path, accessibleInterface, "GetChildren")});
    for (std::size_t index = 0; index < asked.size(); ++index) {
        Questions& questions = asked[index];
        AccessibleNode node;
        node.path = siblings[static_cast<qsizetype>(index)];
        node.name = propertyIn(questions.name).toString();
        node.role = answer(questions.role).toString();
        node.isShowing = isShowingIn(answer(questions.states));
        node.area = areaIn(answer(questions.extents));
        into.push_back(node);
        // What is in a hidden page is not showing either. The program itself, above its windows, has no
        // state.
        if (node.isShowing || depth == 0) walk(pathsIn(answer(questions.children)), into, depth + 1);
    }
}

std::vector<AccessibleNode> AccessibleTree::nodes() {
    program_ = programOnBus();
    std::vector<AccessibleNode> all;
    if (!program_.isEmpty()) walk({text(rootPath)}, all, 0);
    return all;
}

std::optional<AccessibleNode> AccessibleTree::find(const QString& name, const QString& role) {
    for (const AccessibleNode& node : nodes())
        if (node.isShowing && node.name == name && (role.isEmpty() || node.role == role)) return node;
    return std::nullopt;
}

std::optional<double> AccessibleTree::value(const AccessibleNode& node) const {
    QDBusPendingCall question = askProperty(node.path, valueInterface, "CurrentValue");
    const QVariant value = propertyIn(question);
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
