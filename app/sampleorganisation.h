#ifndef SAMPLEORGANISATION_H
#define SAMPLEORGANISATION_H

#include <QString>

namespace nivaro {
class LocalStorage;
}

/**
 * Fills an empty store with a generated organisation, so that a first run of
 * the client has something real to show: firms and their departments,
 * employees with plausible Russian names, birthdays, identity documents,
 * valid SNILS and INN numbers, citizenships, cards, a few photos and a few
 * dismissed, plus the database settings, the common work schedules and,
 * for the first employees, their schedule calendars and absences, the
 * smart-card profiles of three card families and, for a dozen employees,
 * biometric templates.
 * Deterministic for a given seed.
 */
class SampleOrganisation
{
public:
    struct Options
    {
        int employees = 300;
        quint32 seed = 20261122;
        // Photos are the costly part of a large store; scale checks do without.
        int photos = 12;
        // Employees with schedule history, personal schedules and absences.
        int calendars = 200;
    };

    // Writes everything into the store (and so its file) in a few large
    // transactions. Returns false with a reason when the store refuses.
    static bool generate(nivaro::LocalStorage *storage, const Options &options, QString *error);
};

#endif
