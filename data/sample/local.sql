-- The local database (LOCALBASE) of the sample station: the parameter table.
-- A row applies to the stations whose DEPARTID matches its wdh pattern; the
-- first valid match wins.

CREATE TABLE parameter (
    ParamEnName VARCHAR(40) NOT NULL,
    ParamCnName VARCHAR(60),
    RegionName VARCHAR(40) NOT NULL,
    wdh VARCHAR(20) NOT NULL,
    ParamValue VARCHAR(255),
    IsValid INTEGER
);
CREATE INDEX PARAMETER_NAME ON parameter (ParamEnName, RegionName);

INSERT INTO parameter (ParamEnName, ParamCnName, RegionName, wdh, ParamValue, IsValid) VALUES
    ('DoubleSealQuota', '双人验印限额', 'SBMK', '%', '50000', 1),
    ('DoubleSealQuota', '双人验印限额', 'SBMK', '1102%', '80000', 0),
    ('YYRate', '验印通过率', 'SBMK', '%', '85', 1),
    ('MoneyLen', '金额长度', 'SBMK', '%', '16', 1),
    ('CHEQUENOLENGTH', '支票号长度', 'BANKPARAM', '%', '8', 1),
    ('HYDHLEN', '行员代码长度', 'HYADM', '%', '4', 1),
    ('HYPWDLEN', '行员密码长度', 'HYADM', '%', '6', 1);
