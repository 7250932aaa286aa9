// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/widgettree.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMetaEnum>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextEdit>
#include <QToolButton>

#include <memory>

namespace {

// These come from the place in the window, from what is shown there, or from the system's style (palette), or
// another property says the same.
const QStringList &leftOut()
{
    static const QStringList names
        = QString(
              "objectName accessibleName geometry normalGeometry frameGeometry frameSize frameRect "
              "frameWidth rect size width height minimumWidth minimumHeight maximumWidth "
              "maximumHeight pos x y childrenRect childrenRegion sizeHint minimumSizeHint visible "
              "isActiveWindow focus windowIcon icon pixmap palette count currentIndex currentText document")
              .split(u' ');
    return names;
}

// Makes a new widget of the same class, to compare with. For our own classes, a main window.
template <typename... Widgets>
std::unique_ptr<QWidget> newWidgetLike(const QWidget &widget)
{
    std::unique_ptr<QWidget> fresh;
    const auto make = [&]<typename Widget>(const Widget *) {
        if (widget.metaObject() == &Widget::staticMetaObject) {
            fresh = std::make_unique<Widget>();
        }
    };
    (make(static_cast<const Widgets *>(nullptr)), ...);
    return fresh != nullptr ? std::move(fresh) : std::make_unique<QMainWindow>();
}

QString nameOf(const QObject &object)
{
    return object.objectName().isEmpty() ? QStringLiteral("(unnamed)") : object.objectName();
}

QString inWords(const QMetaProperty &property, const QVariant &value)
{
    if (value.typeId() == QMetaType::QSize) {
        return QStringLiteral("%1x%2").arg(value.toSize().width()).arg(value.toSize().height());
    }
    if (property.isEnumType()) {
        const QMetaEnum enumerator = property.enumerator();
        return QString::fromLatin1(enumerator.isFlag()
                                       ? enumerator.valueToKeys(value.toInt())
                                       : QByteArray(enumerator.valueToKey(value.toInt())));
    }
    return value.toString();
}

QStringList changedProperties(const QWidget &widget)
{
    const auto fresh
        = newWidgetLike<QCheckBox, QComboBox, QLabel, QLineEdit, QMenu, QProgressBar, QPushButton,
                        QStackedWidget, QTextEdit, QToolButton, QFrame, QWidget>(widget);
    const QVariant usualShape = fresh->property("frameShape");
    if (usualShape != widget.property("frameShape")) {
        fresh->setProperty("frameShape", widget.property("frameShape")); // and its size policy
    }
    QStringList changed;
    for (int i = 0; i < widget.metaObject()->propertyCount(); ++i) {
        const QMetaProperty property = widget.metaObject()->property(i);
        const QString name = property.name();
        if (leftOut().contains(name) || (widget.isWindow() && name == "minimumSize")) {
            continue; // a window's least size comes from its layout and depends on fonts
        }
        const QVariant value = property.read(&widget);
        if (value != (name == "frameShape" ? usualShape : fresh->property(property.name()))) {
            changed += name + u'=' + inWords(property, value);
        }
    }
    return changed;
}

// The icons from the bundle that the button shows when unchecked and when checked.
QString iconsOf(const QAbstractButton &button)
{
    const auto fileOf = [&button](QIcon::State state) {
        const QSize size = button.iconSize();
        const QImage shown = button.icon().pixmap(size, QIcon::Normal, state).toImage();
        for (const QString &name : QDir(QStringLiteral(":/icons")).entryList()) {
            if (shown == QIcon(QStringLiteral(":/icons/") + name).pixmap(size).toImage()) {
                return name;
            }
        }
        return QStringLiteral("unknown");
    };
    return QStringLiteral("icons=%1|%2").arg(fileOf(QIcon::Off), fileOf(QIcon::On));
}

QString lineOf(const QWidget &widget)
{
    QStringList parts{nameOf(widget) + u' ' + widget.metaObject()->className()};
    parts += changedProperties(widget);
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget);
        button != nullptr && !button->icon().isNull()) {
        parts += iconsOf(*button);
    }
    if (const auto *list = qobject_cast<const QComboBox *>(&widget)) {
        QStringList items;
        for (int i = 0; i < list->count(); ++i) {
            items += list->itemText(i);
        }
        parts += QStringLiteral("items=") + items.join(u'|');
    }
    return parts.join(QStringLiteral("; "));
}

QString lineOf(const QSpacerItem &spacer)
{
    const auto policy = [](QSizePolicy::Policy value) {
        return QMetaEnum::fromType<QSizePolicy::Policy>().valueToKey(value);
    };
    return QStringLiteral("spacer %1x%2 %3/%4")
        .arg(spacer.sizeHint().width())
        .arg(spacer.sizeHint().height())
        .arg(policy(spacer.sizePolicy().horizontalPolicy()),
             policy(spacer.sizePolicy().verticalPolicy()));
}

// "default" means the style's spacing and margins.
QString lineOf(const QLayout &layout)
{
    QWidget window;
    QWidget widget(&window); // inside a window the style uses other values
    const QVBoxLayout fresh(&widget);
    const auto inWords = [&fresh](int spacing) {
        return spacing == fresh.spacing() ? QStringLiteral("default") : QString::number(spacing);
    };
    QStringList parts{nameOf(layout) + u' ' + layout.metaObject()->className()};
    if (const auto *grid = qobject_cast<const QGridLayout *>(&layout)) {
        parts += QStringLiteral("spacing=%1/%2")
                     .arg(inWords(grid->horizontalSpacing()), inWords(grid->verticalSpacing()));
    } else {
        parts += QStringLiteral("spacing=") + inWords(layout.spacing());
    }
    const QMargins margins = layout.contentsMargins();
    parts += margins == fresh.contentsMargins() ? QStringLiteral("margins=default")
                                                : QStringLiteral("margins=%1,%2,%3,%4")
                                                      .arg(margins.left())
                                                      .arg(margins.top())
                                                      .arg(margins.right())
                                                      .arg(margins.bottom());
    if (layout.sizeConstraint() != fresh.sizeConstraint()) {
        const auto words = QMetaEnum::fromType<QLayout::SizeConstraint>();
        parts += words.valueToKey(layout.sizeConstraint());
    }
    return parts.join(QStringLiteral("; "));
}

QString placeIn(const QLayout &layout, int index)
{
    const auto *grid = qobject_cast<const QGridLayout *>(&layout);
    if (grid == nullptr) {
        return QStringLiteral("[%1] ").arg(index);
    }
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid->getItemPosition(index, &row, &column, &rows, &columns);
    const auto range = [](int first, int count) {
        return count == 1 ? QString::number(first)
                          : QStringLiteral("%1-%2").arg(first).arg(first + count - 1);
    };
    return QStringLiteral("[row %1, column %2] ").arg(range(row, rows), range(column, columns));
}

class TreeWriter
{
public:
    QStringList lines;

    void write(const QWidget &widget, int depth, const QString &place)
    {
        addLine(depth, place + lineOf(widget));
        m_written += &widget;
        if (widget.inherits("QAbstractScrollArea") || widget.inherits("QComboBox")
            || widget.inherits("QMenu")) {
            return;
        }
        const auto *window = qobject_cast<const QMainWindow *>(&widget);
        if (window != nullptr && window->centralWidget() != nullptr) {
            write(*window->centralWidget(), depth + 1, QStringLiteral("central "));
        } else if (widget.layout() != nullptr) {
            write(*widget.layout(), depth + 1, QString());
        }
        for (const QObject *child : widget.children()) {
            const auto *other = qobject_cast<const QWidget *>(child);
            if (other != nullptr && !m_written.contains(other)) {
                write(*other, depth + 1, QStringLiteral("beside "));
            }
        }
    }

private:
    void addLine(int depth, const QString &text) { lines += QString(2 * depth, u' ') + text; }

    void write(QLayout &layout, int depth, const QString &place)
    {
        addLine(depth, place + lineOf(layout));
        for (int index = 0; index < layout.count(); ++index) {
            QLayoutItem *item = layout.itemAt(index);
            const QString itemPlace = placeIn(layout, index);
            if (item->widget() != nullptr) {
                write(*item->widget(), depth + 1, itemPlace);
            } else if (item->layout() != nullptr) {
                write(*item->layout(), depth + 1, itemPlace);
            } else {
                addLine(depth + 1, itemPlace + lineOf(*item->spacerItem()));
            }
        }
    }

    QList<const QWidget *> m_written;
};

} // namespace

QStringList widgetTree(const QWidget &window)
{
    TreeWriter writer;
    writer.write(window, 0, QString());
    return writer.lines;
}
