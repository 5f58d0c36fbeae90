#include "photowidget.h"

#include <QDebug>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLabel>
#include <QMessageBox>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

PhotoWidget::PhotoWidget(QWidget *parent)
    : QWidget(parent)
    , m_picture(new QLabel(this))
    , m_loadButton(new QToolButton(this))
    , m_clearButton(new QToolButton(this))
{
    m_picture->setObjectName(QStringLiteral("photoLabel"));
    m_picture->setAlignment(Qt::AlignCenter);
    // A fixed frame: a label sized by its pixmap would push the whole form
    // wider than the panel whenever a large photo is shown.
    m_picture->setFixedSize(150, 200);
    m_picture->setFrameShape(QFrame::StyledPanel);

    m_loadButton->setObjectName(QStringLiteral("loadPhotoButton"));
    m_loadButton->setText(tr("Загрузить"));
    m_loadButton->setToolTip(tr("Загрузить фотографию"));
    m_clearButton->setObjectName(QStringLiteral("clearPhotoButton"));
    m_clearButton->setText(tr("Очистить"));
    m_clearButton->setToolTip(tr("Удалить фотографию"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_loadButton);
    buttons->addWidget(m_clearButton);
    buttons->addStretch();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_picture, 1);
    layout->addLayout(buttons);

    connect(m_loadButton, &QToolButton::clicked, this, &PhotoWidget::choosePhoto);
    connect(m_clearButton, &QToolButton::clicked, this, &PhotoWidget::clearPhoto);
    showCurrent();
}

void PhotoWidget::setPhoto(const QPixmap &photo)
{
    m_photo = photo;
    showCurrent();
}

QPixmap PhotoWidget::photo() const
{
    return m_photo;
}

bool PhotoWidget::hasPhoto() const
{
    return !m_photo.isNull();
}

void PhotoWidget::setDefaultPicture(const QPixmap &picture)
{
    m_default = picture;
    showCurrent();
}

QPixmap PhotoWidget::defaultPicture() const
{
    return m_default;
}

void PhotoWidget::setButtonsEnabled(bool enabled)
{
    m_loadButton->setEnabled(enabled);
    m_clearButton->setEnabled(enabled);
}

bool PhotoWidget::loadFromFile(const QString &fileName, QString *error)
{
    QImageReader reader(fileName);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    if (image.isNull()) {
        qDebug() << "photo: cannot read" << fileName << reader.errorString();
        if (error)
            *error = tr("Файл %1 не является изображением или поврежден").arg(fileName);
        return false;
    }
    m_photo = QPixmap::fromImage(image);
    showCurrent();
    emit imageChanged(m_photo);
    return true;
}

void PhotoWidget::choosePhoto()
{
    const QString fileName = QFileDialog::getOpenFileName(this, tr("Загрузить фотографию"), QString(),
                                                          tr("Изображения (*.png *.jpg *.jpeg *.bmp)"));
    if (fileName.isEmpty())
        return;
    QString error;
    if (!loadFromFile(fileName, &error))
        QMessageBox::warning(this, tr("Загрузить фотографию"), error);
}

void PhotoWidget::clearPhoto()
{
    if (m_photo.isNull())
        return;
    m_photo = QPixmap();
    showCurrent();
    emit imageChanged(m_photo);
}

void PhotoWidget::showCurrent()
{
    const QPixmap &shown = m_photo.isNull() ? m_default : m_photo;
    const QSize room = m_picture->contentsRect().size();
    // Smooth scaling is what showing an employee costs most; the same
    // picture in the same room needs none.
    const qint64 key = shown.isNull() ? 0 : shown.cacheKey();
    if (key == m_shownKey && room == m_shownRoom)
        return;
    m_shownKey = key;
    m_shownRoom = room;
    m_picture->setPixmap(shown.isNull() ? QPixmap() : shown.scaled(room, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}
