#ifndef PHOTOWIDGET_H
#define PHOTOWIDGET_H

#include "nvwidgets_export.h"

#include <QPixmap>
#include <QWidget>

class QLabel;
class QToolButton;

/**
 * An employee's photo with buttons to load one from a file and to clear
 * it. Without a photo it shows its default picture. Every change the user
 * makes emits imageChanged with the new photo (a null pixmap when cleared);
 * setting a photo from code does not.
 */
class NVWIDGETS_EXPORT PhotoWidget : public QWidget
{
    Q_OBJECT
public:
    explicit PhotoWidget(QWidget *parent = nullptr);

    void setPhoto(const QPixmap &photo);
    QPixmap photo() const;
    bool hasPhoto() const;
    void setDefaultPicture(const QPixmap &picture);
    QPixmap defaultPicture() const;
    void setButtonsEnabled(bool enabled);

    // Loads an image file; a file that is no readable image leaves the
    // photo as it was and returns false with a message for the user.
    bool loadFromFile(const QString &fileName, QString *error = nullptr);

public Q_SLOTS:
    // What the buttons do: ask for a file, clear.
    void choosePhoto();
    void clearPhoto();

Q_SIGNALS:
    void imageChanged(const QPixmap &photo);

private:
    void showCurrent();

    QPixmap m_photo;
    QPixmap m_default;
    qint64 m_shownKey = -1; // what the label shows: source picture and room
    QSize m_shownRoom;
    QLabel *m_picture = nullptr;
    QToolButton *m_loadButton = nullptr;
    QToolButton *m_clearButton = nullptr;
};

#endif
