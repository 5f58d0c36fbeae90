#include "changesummarywizardpage.h"

#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

ChangeSummaryWizardPage::ChangeSummaryWizardPage(QWidget *parent)
    : NVWizardPage(parent)
    , m_header(new QLabel(this))
    , m_view(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("ChangeSummaryWizardPage"));
    setTitle(tr("Проверка изменений"));
    setSubTitle(tr("Ничего еще не изменено. Проверьте, что будет сделано: изменения начнутся на следующей странице."));
    m_header->setObjectName(QStringLiteral("lbSummary"));
    m_view->setObjectName(QStringLiteral("twChanges"));
    m_view->setColumnCount(3);
    m_view->setHeaderLabels({tr("Объект и поле"), tr("Было"), tr("Станет")});
    m_view->setUniformRowHeights(true);
    m_view->header()->setSectionResizeMode(QHeaderView::Interactive);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_header);
    layout->addWidget(m_view, 1);
}

void ChangeSummaryWizardPage::setChanges(const QList<Change> &changes)
{
    m_changes = changes;
    m_view->clear();
    QList<QTreeWidgetItem *> items;
    items.reserve(changes.size());
    for (const Change &change : changes) {
        auto *item = new QTreeWidgetItem({change.action.isEmpty() ? change.object
                                                                  : QStringLiteral("%1: %2").arg(change.action, change.object)});
        item->setData(0, Qt::UserRole, change.uid);
        for (const Field &field : change.fields)
            new QTreeWidgetItem(item, {field.name, field.oldValue, field.newValue});
        items.append(item);
    }
    // One insertion, not one per object: a transfer of a whole firm lists
    // thousands of people.
    m_view->addTopLevelItems(items);
    // A handful of objects is read best with every field open; thousands
    // are read by their names first.
    if (changes.size() <= 20)
        m_view->expandAll();
    m_view->resizeColumnToContents(0);
    m_header->setText(tr("Объектов: %1").arg(changes.size()));
}

QString ChangeSummaryWizardPage::summaryText() const
{
    QStringList lines;
    for (const Change &change : m_changes) {
        lines.append(change.action.isEmpty() ? change.object : QStringLiteral("%1: %2").arg(change.action, change.object));
        for (const Field &field : change.fields)
            lines.append(QStringLiteral("  %1: %2 -> %3").arg(field.name, field.oldValue, field.newValue));
    }
    return lines.join(QLatin1Char('\n'));
}
