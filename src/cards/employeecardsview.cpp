#include "employeecardsview.h"

#include "employeecardsmodel.h"

#include <dbparams.h>

#include <QDebug>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QTableView>
#include <QVBoxLayout>

#include <qrcodegen.hpp>

#include <stdexcept>

using nivaro::ObjectInfo;

namespace {
constexpr int QuietZone = 4; // modules of white around the code, as readers expect
constexpr int QrScale = 4;
} // namespace

EmployeeCardsView::EmployeeCardsView(QWidget *parent)
    : QWidget(parent)
    , m_model(new EmployeeCardsModel(this))
    , m_table(new QTableView)
    , m_qr(new QLabel)
    , m_qrCaption(new QLabel)
{
    m_table->setObjectName(QStringLiteral("cardsTable"));
    m_table->setModel(m_model);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->verticalHeader()->hide();
    // An employee has a few cards: sizing to the text costs nothing and
    // keeps card type names whole.
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_qr->setObjectName(QStringLiteral("qrLabel"));
    m_qr->setAlignment(Qt::AlignCenter);
    m_qr->setMinimumSize(160, 160);
    m_qrCaption->setObjectName(QStringLiteral("qrCaption"));
    m_qrCaption->setAlignment(Qt::AlignCenter);
    m_qrCaption->setWordWrap(true);

    auto *side = new QVBoxLayout;
    side->addWidget(m_qr);
    side->addWidget(m_qrCaption);
    side->addStretch();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_table, 1);
    layout->addLayout(side);

    connect(m_table->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex &current) {
        m_selected = current.isValid() ? m_model->card(current.row()).uid() : 0;
        showSelected();
    });
    // A reload resets the rows: keep the card the operator looked at.
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] { selectCard(m_selected); });
    showSelected();
}

void EmployeeCardsView::setWorker(nivaro::TYPE_ID uid)
{
    m_selected = 0;
    m_model->setWorker(uid);
    m_table->resizeColumnsToContents();
}

nivaro::TYPE_ID EmployeeCardsView::worker() const
{
    return m_model->worker();
}

void EmployeeCardsView::selectCard(nivaro::TYPE_ID card)
{
    int row = m_model->rowOf(card);
    if (row < 0)
        row = m_model->rowCount() > 0 ? 0 : -1;
    if (row >= 0)
        m_table->setCurrentIndex(m_model->index(row, 0));
    m_selected = row >= 0 ? m_model->card(row).uid() : 0;
    showSelected();
}

nivaro::TYPE_ID EmployeeCardsView::selectedCard() const
{
    return m_selected;
}

void EmployeeCardsView::showSelected()
{
    const int row = m_model->rowOf(m_selected);
    const ObjectInfo card = m_model->card(row);
    m_qrText = card.isValid() ? qrText(card) : QString();
    const QImage image = m_qrText.isEmpty() ? QImage() : qrImage(m_qrText, QrScale);
    m_qr->setPixmap(QPixmap::fromImage(image));
    if (!card.isValid())
        m_qrCaption->setText(m_model->rowCount() ? tr("Выберите карту") : tr("Карт нет"));
    else
        m_qrCaption->setText(tr("Карта %1").arg(m_model->data(m_model->index(row, EmployeeCardsModel::NumberColumn)).toString()));
}

QString EmployeeCardsView::qrText(const ObjectInfo &card)
{
    QStringList parts;
    const auto add = [&parts, &card](const char *tag, const QString &key) {
        const QString value = card.parameter(key).trimmed();
        if (!value.isEmpty())
            parts << QLatin1String(tag) + QLatin1Char(':') + value;
    };
    add("CARD", db::card::NUMBER);
    add("UID", db::card::UID);
    add("FROM", db::card::DATE_BEGIN);
    add("TO", db::card::DATE_END);
    return parts.join(QLatin1Char(';'));
}

QImage EmployeeCardsView::qrImage(const QString &text, int scale)
{
    scale = qMax(1, scale);
    try {
        const qrcodegen::QrCode code = qrcodegen::QrCode::encodeText(text.toUtf8().constData(), qrcodegen::QrCode::Ecc::MEDIUM);
        const int side = code.getSize() + 2 * QuietZone;
        QImage image(side * scale, side * scale, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        for (int y = 0; y < code.getSize(); ++y) {
            for (int x = 0; x < code.getSize(); ++x) {
                if (code.getModule(x, y))
                    painter.fillRect((x + QuietZone) * scale, (y + QuietZone) * scale, scale, scale, Qt::black);
            }
        }
        return image;
    } catch (const std::exception &e) {
        // qrcodegen throws when the text does not fit the largest version.
        qDebug() << "cards view: no QR code" << text.size() << e.what();
        return QImage();
    }
}
