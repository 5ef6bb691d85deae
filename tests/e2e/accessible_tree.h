// What a running program tells assistive technology: its controls by role and name, and where they are on the
// screen. Stands in for the accessibility service of a Desktop's bus and talks AT-SPI over it: make it before
// the program starts, and let events run while it does. Main thread.
#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>
#include <vector>

namespace orlix::e2e {

struct AccessibleNode {
    QString path;  ///< the object's path on the bus
    QString name;
    QString role;  ///< as AT-SPI calls it: "push button", "radio button", "label"
    QRect area;    ///< on the screen
    bool isShowing = false;
};

/// The object at which a program asks for the bus of assistive technology: ours is the same bus.
class AccessibilityBus : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.a11y.Bus")
  public:
    explicit AccessibilityBus(QString address) : address_(std::move(address)) {}
    Q_SCRIPTABLE Q_INVOKABLE QString GetAddress() const { return address_; }  // the protocol's own name

  private:
    QString address_;
};

class AccessibleTree {
  public:
    explicit AccessibleTree(const QString& busAddress);
    ~AccessibleTree();
    AccessibleTree(const AccessibleTree&) = delete;
    AccessibleTree& operator=(const AccessibleTree&) = delete;

    /// All nodes but what is inside of one that does not show, parents before children; empty while no
    /// accessible program is on the bus.
    std::vector<AccessibleNode> nodes();
    /// The first showing node with this name, of this role when one is given.
    std::optional<AccessibleNode> find(const QString& name, const QString& role = QString());
    /// The value of a slider or spin box.
    std::optional<double> value(const AccessibleNode& node) const;
    /// One line a node, indented: what a failing test prints.
    QString description();

  private:
    QString programOnBus() const;
    QDBusPendingCall ask(const QString& path, const char* interface, const char* method,
                         const QVariantList& arguments = {}) const;
    QDBusPendingCall askProperty(const QString& path, const char* interface, const char* name) const;
    void walk(const QStringList& siblings, std::vector<AccessibleNode>& into, int depth) const;

    QString connectionName_;
    QDBusConnection bus_;
    AccessibilityBus service_;
    QString program_;
};

}  // namespace orlix::e2e
