#pragma once

#include <QString>

// Base of every service result. `status` says how the exchange ended; a fresh record is NotSet,
// so a record no exchange filled never passes a `status == Ok` test.
struct RequestResult {
    enum Status : int {
        Ok = 0,              // the reply parsed and carried no error keys
        ServerError = 1,     // the reply has an "error" or a "message" key
        NoInternet = 2,      // empty body: no reply, time-out, transport failure
        InvalidResponse = 4, // not JSON, or the expected structure could not be read
        NotSet = 5,          // nothing filled the record yet
    };

    int status = NotSet;
    QString message;

    bool isOk() const { return status == Ok; }
};
