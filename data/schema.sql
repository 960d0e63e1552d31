-- The empty project: data.dat, beside the program, is made from this file. docs/project-file.md
-- gives the reasons.

-- These come first: they can't change after the first page is written.
PRAGMA page_size = 8192;
PRAGMA auto_vacuum = NONE;
PRAGMA encoding = 'UTF-8';

PRAGMA application_id = 0x566C7472;
PRAGMA user_version = 1;

CREATE TABLE tblGoogleDays (
    GoogleDayId     INTEGER PRIMARY KEY,
    Adgroup         TEXT    NOT NULL DEFAULT '',
    AdwordsTyp      TEXT    NOT NULL DEFAULT '',
    agStatus        TEXT    NOT NULL DEFAULT '',
    Budget          NUMERIC NOT NULL DEFAULT 0,
    Campaign        TEXT    NOT NULL DEFAULT '',
    CampStatus      TEXT    NOT NULL DEFAULT '',
    Clicks          NUMERIC NOT NULL DEFAULT 0,
    conv            NUMERIC NOT NULL DEFAULT 0,
    ConvValue       NUMERIC NOT NULL DEFAULT 0,
    ConvCost        NUMERIC NOT NULL DEFAULT 0,
    cost            NUMERIC NOT NULL DEFAULT 0,
    cpc             NUMERIC NOT NULL DEFAULT 0,
    CreativeDestUrl TEXT    NOT NULL DEFAULT '',
    CreativeId      NUMERIC NOT NULL DEFAULT 0,
    CreativeStatus  TEXT    NOT NULL DEFAULT '',
    creativeVisUrl  TEXT    NOT NULL DEFAULT '',
    ctr             NUMERIC NOT NULL DEFAULT 0,
    desc1           TEXT    NOT NULL DEFAULT '',
    desc2           TEXT    NOT NULL DEFAULT '',
    GoogleDate      TEXT    NOT NULL DEFAULT '',
    headline        TEXT    NOT NULL DEFAULT '',
    Impressions     NUMERIC NOT NULL DEFAULT 0,
    KeyWord         TEXT    NOT NULL DEFAULT '',
    keywordMinCpc   NUMERIC NOT NULL DEFAULT 0,
    kwDestUrl       TEXT    NOT NULL DEFAULT '',
    kwStatus        TEXT    NOT NULL DEFAULT '',
    kwType          TEXT    NOT NULL DEFAULT '',
    Leads           NUMERIC NOT NULL DEFAULT 0,
    MaxContentCpc   NUMERIC NOT NULL DEFAULT 0,
    MaxCpc          NUMERIC NOT NULL DEFAULT 0,
    PageViews       NUMERIC NOT NULL DEFAULT 0,
    Pos             NUMERIC NOT NULL DEFAULT 0,
    Purchases       NUMERIC NOT NULL DEFAULT 0,
    Transactions    NUMERIC NOT NULL DEFAULT 0,
    GoogleMonth     TEXT    NOT NULL DEFAULT '',
    GoogleWeek      TEXT    NOT NULL DEFAULT ''
);

-- The key of a record; its first four columns are also all that the tree reads.
CREATE UNIQUE INDEX idxRecord
    ON tblGoogleDays (Campaign, Adgroup, KeyWord, kwType, GoogleDate, CreativeId);

CREATE INDEX idxDate ON tblGoogleDays (GoogleDate);
