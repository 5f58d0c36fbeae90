#ifndef PAGELISTWIZARD_H
#define PAGELISTWIZARD_H

#include "nvwidgets_export.h"

#include <QWizard>

class QListWidget;

/**
 * A wizard with the list of its pages beside them, the current one marked,
 * so that an operator sees how far a long wizard has gone. Short wizards
 * hide the list.
 */
class NVWIDGETS_EXPORT PageListWizard : public QWizard
{
    Q_OBJECT
public:
    explicit PageListWizard(QWidget *parent = nullptr);
    ~PageListWizard() override;

    void setPageListVisible(bool visible);
    bool isPageListVisible() const;
    // The titles the list shows, in page order; for tests and hosts.
    QStringList pageTitles() const;

private:
    void refreshPageList();

    QListWidget *m_pageList = nullptr;
    bool m_pageListVisible = true;
};

#endif
