#include "cardtemplateswidget.h"

#include "ui_cardtemplateswidget.h"

#include <nvdatastream.h>
#include <nvglobals.h>

#include <pbpvssdk5.h>

#include <QCoreApplication>
#include <QHeaderView>
#include <QTableWidgetItem>

namespace {

constexpr int NameColumn = 0;
constexpr int SizeColumn = 1;

// Palm-vein templates are kept unpacked; the card gets the SDK's packed
// form, whose size is fixed.
int cardSize(const nivaro::_TEMPLATE_DATA &tpl)
{
    if (tpl.type == nivaro::_TEMPLATE_DATA::PalmVein)
        return PBPVSSDK5::packedTemplateSize();
    return tpl.data.size();
}

} // namespace

CardTemplatesWidget::CardTemplatesWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::CardTemplatesWidget)
{
    ui->setupUi(this);
    ui->tableWidget->setColumnCount(2);
    ui->tableWidget->setHorizontalHeaderLabels({tr("Идентификатор"), tr("Размер, байт")});
    ui->tableWidget->horizontalHeader()->setStretchLastSection(true);
    // Connected once here rather than in setTemplates, which the card
    // widget calls for every employee.
    connect(ui->tableWidget, &QTableWidget::cellClicked, this, &CardTemplatesWidget::calculateTemplatesSize);
    // A checkbox toggled from the keyboard changes no cell click.
    connect(ui->tableWidget, &QTableWidget::itemChanged, this, [this](QTableWidgetItem *item) {
        if (item->column() == NameColumn)
            calculateTemplatesSize();
    });
}

CardTemplatesWidget::~CardTemplatesWidget() = default;

void CardTemplatesWidget::setTemplates(const QList<nivaro::_TEMPLATE_DATA> &templates)
{
    QTableWidget *table = ui->tableWidget;
    const QSignalBlocker blocker(table);
    table->clearContents();
    table->setRowCount(templates.size());
    for (int row = 0; row < templates.size(); ++row) {
        const nivaro::_TEMPLATE_DATA &tpl = templates.at(row);
        QByteArray bytes;
        {
            nivaro::NVDataStream out(&bytes, QIODevice::WriteOnly);
            out << tpl;
        }
        const QByteArray finger = NVGlobals::fingerName(tpl.finger).toUtf8();
        auto *name = new QTableWidgetItem(QCoreApplication::translate("NVGlobals", finger.constData()));
        name->setFlags(Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
        name->setCheckState(Qt::Unchecked);
        name->setData(Qt::UserRole, bytes);
        table->setItem(row, NameColumn, name);

        auto *size = new QTableWidgetItem(QString::number(cardSize(tpl)));
        size->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        table->setItem(row, SizeColumn, size);
    }
    table->resizeColumnToContents(NameColumn);
    calculateTemplatesSize();
}

void CardTemplatesWidget::setMaxUserDataSize(int bytes)
{
    m_maxUserDataSize = bytes;
    ui->lbSizeWarning->setText(tr("На выбранную смарт-карту можно записать не более %1 байт").arg(bytes));
    calculateTemplatesSize();
}

QList<nivaro::_TEMPLATE_DATA> CardTemplatesWidget::templates() const
{
    QList<nivaro::_TEMPLATE_DATA> list;
    const QTableWidget *table = ui->tableWidget;
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem *item = table->item(row, NameColumn);
        if (!item || item->checkState() != Qt::Checked)
            continue;
        nivaro::NVDataStream in(item->data(Qt::UserRole).toByteArray());
        nivaro::_TEMPLATE_DATA tpl;
        in >> tpl;
        if (in.status() == QDataStream::Ok)
            list.append(tpl);
    }
    return list;
}

void CardTemplatesWidget::calculateTemplatesSize()
{
    QTableWidget *table = ui->tableWidget;
    // Changing the flags below changes items; that must not come back here.
    const QSignalBlocker blocker(table);
    qint64 checkedSize = 0;
    for (int row = 0; row < table->rowCount(); ++row) {
        const QTableWidgetItem *item = table->item(row, NameColumn);
        if (item && item->checkState() == Qt::Checked)
            checkedSize += table->item(row, SizeColumn)->text().toLongLong();
    }
    for (int row = 0; row < table->rowCount(); ++row) {
        QTableWidgetItem *item = table->item(row, NameColumn);
        if (!item || item->checkState() == Qt::Checked)
            continue;
        const qint64 size = table->item(row, SizeColumn)->text().toLongLong();
        Qt::ItemFlags flags = item->flags();
        flags.setFlag(Qt::ItemIsEnabled, checkedSize + size <= m_maxUserDataSize);
        item->setFlags(flags);
        table->item(row, SizeColumn)->setFlags(flags & ~Qt::ItemIsUserCheckable);
    }
}
