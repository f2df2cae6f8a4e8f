#include "designer/window/gridDelegate.h"

#include "catalogue/chooser.h"
#include "catalogue/pidCatalogue.h"
#include "designer/window/gridModel.h"
#include "platform/text.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStyle>

namespace zint {
namespace {

QString textOf(const QModelIndex& index) { return index.data(Qt::EditRole).toString(); }

template <typename Widget>
Widget* named(Widget* widget, const char* name, const QString& accessibleName)
{
    widget->setObjectName(QLatin1String(name));
    widget->setAccessibleName(accessibleName);
    return widget;
}

/// The list is as wide as its entries; its column may be narrower.
void widenList(QComboBox& chooser)
{
    QAbstractItemView* list = chooser.view();
    const int frame = 2 * chooser.style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    list->setMinimumWidth(list->sizeHintForColumn(0) + frame +
                          chooser.style()->pixelMetric(QStyle::PM_ScrollBarExtent));
}

int entryFor(const QComboBox& chooser, int number)
{
    for (int i = 0; i < chooser.count(); ++i) {
        if (chooserNumber(fromQt(chooser.itemText(i))) == number)
            return i;
    }
    return -1;
}

/// What is typed while the list of a chooser is open goes into its box. @return whether it did
bool typeIntoBox(const QAbstractItemView& list, QEvent& event)
{
    auto* chooser = qobject_cast<QComboBox*>(list.parentWidget()->parentWidget());
    const bool isDigit =
        event.type() == QEvent::KeyPress &&
        static_cast<const QKeyEvent&>(event).text().contains(QRegularExpression(QStringLiteral("^[0-9]$")));
    if (chooser == nullptr || !isDigit)
        return false;
    chooser->hidePopup();
    chooser->lineEdit()->selectAll(); // it takes the place of what stands there
    QCoreApplication::sendEvent(chooser->lineEdit(), &event);
    return true;
}

} // namespace

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const
{
    switch (columnOf(index)) {
    case GridColumn::conversion: {
        auto* chooser = named(new QComboBox(parent), "ObdUnit", tr("Unit conversion"));
        chooser->addItems(index.data(GridModel::choicesRole).toStringList());
        widenList(*chooser);
        return chooser;
    }
    case GridColumn::frequency: {
        auto* chooser = named(new QComboBox(parent), "ObdFreq", tr("Poll frequency"));
        chooser->setEditable(true);
        chooser->setInsertPolicy(QComboBox::NoInsert);
        chooser->setCompleter(nullptr); // a "1" is not the beginning of "1800>about 10min"
        for (const std::string_view choice : PollChoices)
            chooser->addItem(toQt(choice));
        widenList(*chooser);
        // Enter must not choose the first entry when the frequency is none of them.
        chooser->view()->setCurrentIndex({});
        chooser->view()->installEventFilter(const_cast<GridDelegate*>(this));
        return chooser;
    }
    default: {
        auto* texter = named(new QLineEdit(parent), "obdTexter", tr("Cell text"));
        texter->setFrame(false);
        texter->setAlignment(index.data(Qt::TextAlignmentRole).value<Qt::Alignment>());
        return texter;
    }
    }
}

void GridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* texter = qobject_cast<QLineEdit*>(editor)) {
        texter->setText(textOf(index));
    } else if (auto* chooser = qobject_cast<QComboBox*>(editor); chooser->isEditable()) {
        chooser->setCurrentIndex(entryFor(*chooser, textOf(index).toInt()));
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
    if (const auto* list = qobject_cast<QAbstractItemView*>(object))
        return typeIntoBox(*list, *event);
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
