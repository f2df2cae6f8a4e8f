#include "designer/gridDelegate.h"

#include "catalogue/pidCatalogue.h"
#include "designer/gridEditing.h"
#include "designer/gridModel.h"
#include "platform/text.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace zint {
namespace {

GridColumn columnOf(const QModelIndex& index) { return static_cast<GridColumn>(index.column()); }

QString textOf(const QModelIndex& index) { return index.data(Qt::EditRole).toString(); }

template <typename Widget>
Widget* named(Widget* widget, const char* name, const QString& accessibleName)
{
    widget->setObjectName(QLatin1String(name));
    widget->setAccessibleName(accessibleName);
    return widget;
}

} // namespace

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const
{
    switch (columnOf(index)) {
    case GridColumn::conversion: {
        auto* chooser = named(new QComboBox(parent), "ObdUnit", tr("Unit conversion"));
        for (const std::string& choice : conversionChoices(index.data(GridModel::conversionRole).toInt()))
            chooser->addItem(toQt(choice));
        return chooser;
    }
    case GridColumn::frequency: {
        auto* chooser = named(new QComboBox(parent), "ObdFreq", tr("Poll frequency"));
        chooser->setEditable(true);
        chooser->setInsertPolicy(QComboBox::NoInsert);
        chooser->setCompleter(nullptr); // a "1" is not the beginning of "1800>about 10min"
        for (const std::string_view choice : PollChoices)
            chooser->addItem(toQt(choice));
        return chooser;
    }
    default: {
        auto* texter = named(new QLineEdit(parent), "obdTexter", tr("Cell text"));
        texter->setFrame(false);
        return texter;
    }
    }
}

void GridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* texter = qobject_cast<QLineEdit*>(editor)) {
        texter->setText(textOf(index));
    } else if (auto* chooser = qobject_cast<QComboBox*>(editor); chooser->isEditable()) {
        chooser->setEditText(textOf(index));
        chooser->lineEdit()->selectAll();
    }
}

void GridDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const
{
    const auto* texter = qobject_cast<const QLineEdit*>(editor);
    accepted_ = model->setData(
        index, texter != nullptr ? texter->text() : qobject_cast<const QComboBox*>(editor)->currentText());
}

bool GridDelegate::eventFilter(QObject* object, QEvent* event)
{
    auto* editor = qobject_cast<QWidget*>(object);
    const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab) {
        Q_EMIT commitData(editor);
        Q_EMIT closeEditor(editor, NoHint);
        if (accepted_)
            Q_EMIT finished();
        return true;
    }
    if (key == Qt::Key_Escape) {
        Q_EMIT closeEditor(editor, RevertModelCache);
        Q_EMIT abandoned();
        return true;
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

} // namespace zint
