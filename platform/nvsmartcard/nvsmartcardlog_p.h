#ifndef NVSMARTCARDLOG_P_H
#define NVSMARTCARDLOG_P_H

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcSmartCard)

#endif
