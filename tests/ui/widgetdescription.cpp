// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/ui/widgetdescription.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMetaEnum>
#include <QProgressBar>
#include <QPushButton>
#include <QStackedWidget>
#include <QTextEdit>
#include <QToolButton>

#include <algorithm>
#include <memory>

namespace {

template <typename Widget>
std::unique_ptr<QWidget> make()
{
    return std::make_unique<Widget>();
}

// A new widget of the same class, to compare with.
std::unique_ptr<QWidget> newWidgetLike(const QWidget &widget)
{
    using Factory = std::unique_ptr<QWidget> (*)();
    const std::pair<const QMetaObject &, Factory> factories[] = {
        {QCheckBox::staticMetaObject, make<QCheckBox>},
        {QComboBox::staticMetaObject, make<QComboBox>},
        {QLabel::staticMetaObject, make<QLabel>},
        {QLineEdit::staticMetaObject, make<QLineEdit>},
        {QProgressBar::staticMetaObject, make<QProgressBar>},
        {QPushButton::staticMetaObject, make<QPushButton>},
        {QStackedWidget::staticMetaObject, make<QStackedWidget>},
        {QTextEdit::staticMetaObject, make<QTextEdit>},
        {QToolButton::staticMetaObject, make<QToolButton>},
        {QFrame::staticMetaObject, make<QFrame>},
        {QWidget::staticMetaObject, make<QWidget>},
    };
    for (const auto &[metaObject, factory] : factories) {
        if (widget.metaObject() == &metaObject) {
            return factory();
        }
    }
    return std::make_unique<QMainWindow>();
}

struct Property
{
    const char *name;
    const char *word;
};

constexpr Property properties[] = {
    {"windowTitle", "title"},
    {"text", "text"},
    {"minimumSize", "minimum"},
    {"maximumSize", "maximum"},
    {"frameShape", "shape"},
    {"frameShadow", "shadow"},
    {"iconSize", "icon size"},
    {"checkable", "checkable"},
    {"checked", "checked"},
    {"toolButtonStyle", "style"},
    {"editable", "editable"},
    {"readOnly", "read-only"},
    {"minimum", "from"},
    {"maximum", "to"},
    {"value", "value"},
    {"alignment", "alignment"},
    {"wordWrap", "word wrap"},
    {"textVisible", "text visible"},
    {"orientation", "orientation"},
    {"invertedAppearance", "inverted"},
    {"textDirection", "text direction"},
    {"enabled", "enabled"},
};

// Not compared: what comes from the place in the window and from what is shown there. Other tests look
// at the icons, the items and the names for a screen reader.
constexpr const char *notCompared[] = {
    "objectName",
    "accessibleName",
    "geometry",
    "normalGeometry",
    "frameGeometry",
    "frameSize",
    "frameRect",
    "frameWidth",
    "rect",
    "size",
    "width",
    "height",
    "minimumHeight",
    "maximumWidth",
    "pos",
    "x",
    "y",
    "childrenRect",
    "childrenRegion",
    "sizeHint",
    "minimumSizeHint",
    "visible",
    "isActiveWindow",
    "focus",
    "windowIcon",
    "icon",
    "pixmap",
    "count",
    "currentIndex",
    "currentText",
    "document",
};

QString wordFor(const QMetaProperty &property, const QVariant &value)
{
    if (value.typeId() == QMetaType::QSize) {
        return QStringLiteral("%1x%2").arg(value.toSize().width()).arg(value.toSize().height());
    }
    if (property.isEnumType()) {
        const QMetaEnum enumerator = property.enumerator();
        return enumerator.isFlag() ? QString::fromLatin1(enumerator.valueToKeys(value.toInt()))
                                   : QString::fromLatin1(enumerator.valueToKey(value.toInt()));
    }
    return value.toString();
}

QString numbers(const QMargins &margins)
{
    return QStringLiteral("%1,%2,%3,%4")
        .arg(margins.left())
        .arg(margins.top())
        .arg(margins.right())
        .arg(margins.bottom());
}

QString policy(QSizePolicy::Policy value)
{
    return QMetaEnum::fromType<QSizePolicy::Policy>().valueToKey(value);
}

QString gridPlace(const QGridLayout &grid, int index)
{
    int row = 0;
    int column = 0;
    int rows = 0;
    int columns = 0;
    grid.getItemPosition(index, &row, &column, &rows, &columns);
    const QString place = QStringLiteral("%1 row %2").arg(grid.objectName()).arg(row);
    return columns == 1
        ? QStringLiteral("%1 column %2").arg(place).arg(column)
        : QStringLiteral("%1 columns %2-%3").arg(place).arg(column).arg(column + columns - 1);
}

QString placeIn(const QLayout &layout, int index)
{
    if (const auto *grid = qobject_cast<const QGridLayout *>(&layout)) {
        return gridPlace(*grid, index);
    }
    return QStringLiteral("%1[%2]").arg(layout.objectName()).arg(index);
}

// The layout that holds the widget directly; null when none does.
const QLayout *layoutHolding(const QWidget &widget)
{
    const auto layouts = widget.parentWidget()->findChildren<QLayout *>();
    for (const QLayout *layout : layouts) {
        if (layout->indexOf(&widget) >= 0) {
            return layout;
        }
    }
    return nullptr;
}

// A layout that nobody has touched, on a widget that is no window.
struct FreshLayout
{
    QWidget window;
    QWidget widget{&window};
    QVBoxLayout layout{&widget};
};

QString spacing(const QLayout &layout)
{
    if (const auto *grid = qobject_cast<const QGridLayout *>(&layout)) {
        const int horizontal = grid->horizontalSpacing();
        const int vertical = grid->verticalSpacing();
        return horizontal == vertical ? QString::number(horizontal)
                                      : QStringLiteral("%1/%2").arg(horizontal).arg(vertical);
    }
    return layout.spacing() == FreshLayout().layout.spacing() ? "default"
                                                              : QString::number(layout.spacing());
}

QString margins(const QLayout &layout)
{
    return layout.contentsMargins() == FreshLayout().layout.contentsMargins()
        ? "default"
        : numbers(layout.contentsMargins());
}

} // namespace

QString placeOf(const QWidget &widget)
{
    const QWidget *parent = widget.parentWidget();
    if (parent == nullptr) {
        return "top level";
    }
    if (const auto *stack = qobject_cast<const QStackedWidget *>(parent)) {
        return QStringLiteral("%1[%2]").arg(stack->objectName()).arg(stack->indexOf(&widget));
    }
    if (const auto *window = qobject_cast<const QMainWindow *>(parent);
        window != nullptr && window->centralWidget() == &widget) {
        return "central widget";
    }
    const QLayout *layout = layoutHolding(widget);
    return layout == nullptr ? "in " + parent->objectName()
                             : placeIn(*layout, layout->indexOf(&widget));
}

QString settingsOf(const QWidget &widget)
{
    const auto fresh = newWidgetLike(widget);
    QStringList settings;
    for (const Property &property : properties) {
        const int index = widget.metaObject()->indexOfProperty(property.name);
        if (index < 0) {
            continue;
        }
        const QVariant value = widget.property(property.name);
        if (value != fresh->property(property.name)) {
            settings.append(
                QStringLiteral("%1=%2").arg(property.word,
                                            wordFor(widget.metaObject()->property(index), value)));
        }
    }
    return settings.join("; ");
}

QStringList otherSettingsOf(const QWidget &widget)
{
    const auto fresh = newWidgetLike(widget);
    if (fresh->property("frameShape") != widget.property("frameShape")) {
        fresh->setProperty("frameShape", widget.property("frameShape")); // and its size policy
    }
    QStringList names;
    for (int i = 0; i < widget.metaObject()->propertyCount(); ++i) {
        const char *const name = widget.metaObject()->property(i).name();
        const auto isName = [name](const auto &listed) {
            return qstrcmp(listed, name) == 0;
        };
        const bool isCompared
            = std::any_of(std::begin(properties), std::end(properties),
                          [&isName](const Property &property) { return isName(property.name); });
        if (!isCompared && std::none_of(std::begin(notCompared), std::end(notCompared), isName)
            && widget.property(name) != fresh->property(name)) {
            names.append(QString::fromLatin1(name));
        }
    }
    return names;
}

QString layoutDescription(const QLayout &layout)
{
    QStringList parts;
    if (const auto *outer = qobject_cast<const QLayout *>(layout.parent())) {
        parts.append("in " + placeIn(*outer, outer->indexOf(const_cast<QLayout *>(&layout))));
    } else {
        parts.append("on " + layout.parentWidget()->objectName());
    }
    parts.append("spacing " + spacing(layout));
    parts.append("margins " + margins(layout));
    for (int index = 0; index < layout.count(); ++index) {
        if (QSpacerItem *spacer = layout.itemAt(index)->spacerItem()) {
            parts.append(QStringLiteral("spacer [%1] %2x%3 %4/%5")
                             .arg(index)
                             .arg(spacer->sizeHint().width())
                             .arg(spacer->sizeHint().height())
                             .arg(policy(spacer->sizePolicy().horizontalPolicy()),
                                  policy(spacer->sizePolicy().verticalPolicy())));
        }
    }
    return parts.join("; ");
}
