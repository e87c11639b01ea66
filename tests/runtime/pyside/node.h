// A QObject class as a library has it: it knows nothing of Python, and emits whatever its binding must cope with.
#ifndef NODE_H
#define NODE_H

#include <QObject>
#include <QStringList>
#include <QVariant>

enum NODE_MODE { FirstMode, SecondMode };
Q_DECLARE_METATYPE(NODE_MODE)

// Known to nobody else.
class Secret;

class Node : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int level READ level WRITE setLevel NOTIFY levelChanged)

public:
    explicit Node(QObject* parent = nullptr) : QObject(parent) {}

    int level() const { return m_level; }
    void setLevel(int level)
    {
        m_level = level;
        emit levelChanged(level);
    }

    // All signals once, with values that tests know.
    void emitAll();

signals:
    void fired();
    void levelChanged(int level);
    void over(int number);
    void over(const QString& text);
    void counted(uint count);
    void measured(double value);
    void scaled(float value);
    void switched(bool on);
    void named(const QString& name, int place = 7);
    void related(QObject* other);
    void valued(const QVariant& value);
    void listed(const QStringList& list);
    void changedMode(NODE_MODE mode);
    void mysterious(Secret* secret);

public slots:
    void raiseLevel(int by) { setLevel(m_level + by); }

private:
    int m_level = 0;
};

#endif
