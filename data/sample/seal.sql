-- The seal database (SEALBASE) of the sample station: branches, tellers, the
-- business date and the logs the query dialogs filter. Loads into SQLite and
-- MariaDB alike: one statement per line-ending ";", rows generated with
-- recursive CTEs, text built with REPLACE on a template because the two
-- engines share no concatenation operator. Each log's index on its day and
-- time holds the key as well (the row id, the primary key): it serves both
-- a date condition and the viewer's newest-first order.

CREATE TABLE WDDZ (
    WDH VARCHAR(20) NOT NULL,
    WDNAME VARCHAR(60),
    IPADDR VARCHAR(40),
    MASTERNO VARCHAR(20) NOT NULL
);
CREATE INDEX WDDZ_WDH ON WDDZ (WDH);
CREATE INDEX WDDZ_MASTERNO ON WDDZ (MASTERNO);

CREATE TABLE HYCONFIG (
    HYTYPEID INTEGER NOT NULL PRIMARY KEY,
    HYTYPENAME VARCHAR(60),
    HYQX VARCHAR(64),
    HYLEVEL INTEGER,
    ALLOWNUM INTEGER,
    WDH VARCHAR(20),
    ISVISIBLE INTEGER
);

CREATE TABLE HYGROUP (
    HYGROUPID INTEGER NOT NULL PRIMARY KEY,
    GROUPNAME VARCHAR(60),
    WDH VARCHAR(20)
);

CREATE TABLE HY (
    HYDH VARCHAR(20) NOT NULL PRIMARY KEY,
    HYNAME VARCHAR(40),
    HYMM VARCHAR(64),
    HYTYPEID INTEGER,
    HYGROUPID INTEGER,
    WDH VARCHAR(20),
    QYSJ VARCHAR(10),
    ZXSJ VARCHAR(10),
    PWDEXPDATE VARCHAR(10),
    ISAUDIT INTEGER,
    OPHYDH VARCHAR(20),
    OpType INTEGER,
    IfConfirm INTEGER
);

-- The row of curday '3000-01-01' holds the business date a thousand years
-- ahead; the other rows are the non-business days of the calendar.
CREATE TABLE delcalender (
    curday VARCHAR(10) NOT NULL,
    deadline VARCHAR(10)
);

CREATE TABLE YWLOG (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    ACCNO VARCHAR(32),
    YJKNUMBER VARCHAR(20),
    OPTYPE VARCHAR(40),
    Opcode VARCHAR(20),
    OpName VARCHAR(40),
    Opdate VARCHAR(10),
    Optime VARCHAR(8),
    wdh VARCHAR(20),
    Memo VARCHAR(100)
);
CREATE INDEX YWLOG_OPDATE ON YWLOG (Opdate, Optime);

CREATE TABLE YYLOG (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    ACCNO VARCHAR(32),
    chequeno VARCHAR(20),
    YJKNumber VARCHAR(20),
    pztype VARCHAR(40),
    money DECIMAL(16,2),
    OPTYPE VARCHAR(40),
    Result VARCHAR(40),
    Opcode VARCHAR(20),
    OpName VARCHAR(40),
    Opdate VARCHAR(10),
    Optime VARCHAR(8),
    wdh VARCHAR(20)
);
CREATE INDEX YYLOG_OPDATE ON YYLOG (Opdate, Optime);

CREATE TABLE HYLog (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    Opcode VARCHAR(20),
    opName VARCHAR(40),
    FhCode VARCHAR(20),
    FhName VARCHAR(40),
    OPTYPE VARCHAR(10),
    HYDH VARCHAR(20),
    Memo VARCHAR(100),
    Opdate VARCHAR(10),
    Optime VARCHAR(8),
    wdh VARCHAR(20)
);
CREATE INDEX HYLOG_OPDATE ON HYLog (Opdate, Optime);

CREATE TABLE SJLOG (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    Opcode VARCHAR(20),
    OpName VARCHAR(40),
    APPNAME VARCHAR(20),
    IPADDR VARCHAR(40),
    Opdate VARCHAR(10),
    Optime VARCHAR(8),
    wdh VARCHAR(20)
);
CREATE INDEX SJLOG_OPDATE ON SJLOG (Opdate, Optime);

CREATE TABLE ZGSQLOG (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    ZGCODE VARCHAR(20),
    ZGNAME VARCHAR(40),
    Opcode VARCHAR(20),
    ACCNO VARCHAR(32),
    OPTYPE VARCHAR(40),
    Opdate VARCHAR(10),
    Optime VARCHAR(8),
    wdh VARCHAR(20)
);
CREATE INDEX ZGSQLOG_OPDATE ON ZGSQLOG (Opdate, Optime);

CREATE TABLE ZPGLLOG (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    accno VARCHAR(32),
    zpid VARCHAR(20),
    pztype VARCHAR(40),
    opcode VARCHAR(20),
    opName VARCHAR(40),
    opdate VARCHAR(10),
    optime VARCHAR(8),
    wdh VARCHAR(20)
);
CREATE INDEX ZPGLLOG_OPDATE ON ZPGLLOG (opdate, optime);

-- opresult 0 and 4 count as passed, 1 and 5 as not passed; ChequeResult is
-- the text the operator picks in the query dialog.
CREATE TABLE pjsblog (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    accno VARCHAR(32),
    CHEQUENO VARCHAR(20),
    pztype VARCHAR(40),
    money DECIMAL(16,2),
    ChequeResult VARCHAR(40),
    opresult INTEGER,
    opcode VARCHAR(20),
    OpName VARCHAR(40),
    opdate VARCHAR(10),
    optime VARCHAR(8),
    wdh VARCHAR(20)
);
CREATE INDEX PJSBLOG_OPDATE ON pjsblog (opdate, optime);

-- BranchNo carries the prefix "Bank", MasterNo does not.
CREATE TABLE YJREQLOG (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    BranchNo VARCHAR(24),
    MasterNo VARCHAR(20),
    ACCNO VARCHAR(32),
    ReqType VARCHAR(40),
    OPDATE VARCHAR(10),
    OPTIME VARCHAR(8)
);
CREATE INDEX YJREQLOG_OPDATE ON YJREQLOG (OPDATE, OPTIME);

CREATE TABLE PTFHLOG (
    LOGID INTEGER NOT NULL PRIMARY KEY,
    ACCNO VARCHAR(32),
    YJKNUMBER VARCHAR(20),
    Opcode VARCHAR(20),
    OpName VARCHAR(40),
    Opdate VARCHAR(10),
    Optime VARCHAR(8),
    wdh VARCHAR(20)
);
CREATE INDEX PTFHLOG_OPDATE ON PTFHLOG (Opdate, Optime);

-- Branches: the head office, 8 branches, 12 sub-branches under each, 3
-- outlets under each sub-branch and 2 agencies under each outlet of 110101.
INSERT INTO WDDZ (WDH, WDNAME, IPADDR, MASTERNO) VALUES ('110000', '总行营业部', '10.11.0.1', '000');
INSERT INTO WDDZ (WDH, WDNAME, IPADDR, MASTERNO) VALUES
    ('110100', '东城分行', '10.11.1.1', '110000'),
    ('110200', '西城分行', '10.11.2.1', '110000'),
    ('110300', '朝阳分行', '10.11.3.1', '110000'),
    ('110400', '海淀分行', '10.11.4.1', '110000'),
    ('110500', '丰台分行', '10.11.5.1', '110000'),
    ('110600', '石景山分行', '10.11.6.1', '110000'),
    ('110700', '通州分行', '10.11.7.1', '110000'),
    ('110800', '顺义分行', '10.11.8.1', '110000');

INSERT INTO WDDZ (WDH, WDNAME, IPADDR, MASTERNO)
WITH RECURSIVE seq (c) AS (SELECT 1 UNION ALL SELECT c + 1 FROM seq WHERE c < 12)
SELECT f.WDH + seq.c,
       REPLACE(REPLACE('F第C支行', 'F', REPLACE(f.WDNAME, '分行', '')), 'C', seq.c),
       REPLACE(REPLACE('10.11.P.C', 'P', SUBSTR(f.WDH, 4, 1)), 'C', 10 + seq.c),
       f.WDH
FROM WDDZ f, seq
WHERE f.MASTERNO = '110000'
ORDER BY f.WDH, seq.c;

INSERT INTO WDDZ (WDH, WDNAME, IPADDR, MASTERNO)
WITH RECURSIVE seq (c) AS (SELECT 1 UNION ALL SELECT c + 1 FROM seq WHERE c < 3)
SELECT z.WDH * 100 + seq.c,
       REPLACE(REPLACE('Z第C储蓄所', 'Z', z.WDNAME), 'C', seq.c),
       REPLACE(REPLACE('10.11.P.C', 'P', SUBSTR(z.WDH, 4, 3)), 'C', seq.c),
       z.WDH
FROM WDDZ z, seq
WHERE LENGTH(z.WDH) = 6 AND z.MASTERNO <> '000' AND z.MASTERNO <> '110000'
ORDER BY z.WDH, seq.c;

INSERT INTO WDDZ (WDH, WDNAME, IPADDR, MASTERNO)
WITH RECURSIVE seq (c) AS (SELECT 1 UNION ALL SELECT c + 1 FROM seq WHERE c < 2)
SELECT o.WDH * 100 + seq.c,
       REPLACE(REPLACE('O代理点C', 'O', o.WDNAME), 'C', seq.c),
       REPLACE(REPLACE('10.12.P.C', 'P', SUBSTR(o.WDH, 7, 2)), 'C', seq.c),
       o.WDH
FROM WDDZ o, seq
WHERE o.MASTERNO = '110101'
ORDER BY o.WDH, seq.c;

-- Teller types: three at the head office, a counter and a manager type for
-- every branch and sub-branch (id = 2 * (WDH - 110000), + 1 for the manager).
-- The third character of HYQX is the manager right.
INSERT INTO HYCONFIG (HYTYPEID, HYTYPENAME, HYQX, HYLEVEL, ALLOWNUM, WDH, ISVISIBLE) VALUES
    (1, '系统管理员', '1111111111', 1, 2, '110000', 0),
    (2, '总行主管', '1011111100', 2, 5, '110000', 1),
    (3, '总行柜员', '1100000000', 3, 20, '110000', 1);

INSERT INTO HYCONFIG (HYTYPEID, HYTYPENAME, HYQX, HYLEVEL, ALLOWNUM, WDH, ISVISIBLE)
WITH RECURSIVE roles (k) AS (SELECT 0 UNION ALL SELECT k + 1 FROM roles WHERE k < 1)
SELECT (w.WDH - 110000) * 2 + roles.k,
       REPLACE(REPLACE('WR', 'W', w.WDNAME), 'R', CASE roles.k WHEN 1 THEN '主管' ELSE '柜员' END),
       CASE roles.k WHEN 1 THEN '1011100000' ELSE '1100000000' END,
       3 - roles.k,
       CASE roles.k WHEN 1 THEN 2 ELSE 10 END,
       w.WDH,
       1
FROM WDDZ w, roles
WHERE LENGTH(w.WDH) = 6 AND w.MASTERNO <> '000'
ORDER BY w.WDH, roles.k;

INSERT INTO HYGROUP (HYGROUPID, GROUPNAME, WDH) VALUES (1, '总行营业部', '110000');
INSERT INTO HYGROUP (HYGROUPID, GROUPNAME, WDH)
SELECT SUBSTR(WDH, 4, 1) + 1, WDNAME, WDH FROM WDDZ WHERE MASTERNO = '110000' ORDER BY WDH;

-- Tellers: three at the head office (0001 to 0003), then two counter clerks
-- and a manager at each sub-branch (0011 to 0298); every 25th has left.
INSERT INTO HY (HYDH, HYNAME, HYMM, HYTYPEID, HYGROUPID, WDH, QYSJ, ZXSJ, PWDEXPDATE, ISAUDIT, OPHYDH, OpType, IfConfirm) VALUES
    ('0001', '系统管理员', 'E10ADC3949BA59AB', 1, 1, '110000', '2004-01-01', '3000-01-01', '2010-06-30', 1, '0001', 0, 1),
    ('0002', '李建国', '96E79218965EB72C', 2, 1, '110000', '2004-01-01', '3000-01-01', '2010-06-30', 1, '0001', 0, 1),
    ('0003', '王秀英', 'C33367701511B4F6', 3, 1, '110000', '2004-03-15', '3000-01-01', '2010-06-30', 1, '0002', 0, 1);

INSERT INTO HY (HYDH, HYNAME, HYMM, HYTYPEID, HYGROUPID, WDH, QYSJ, ZXSJ, PWDEXPDATE, ISAUDIT, OPHYDH, OpType, IfConfirm)
WITH RECURSIVE
    roles (k) AS (SELECT 0 UNION ALL SELECT k + 1 FROM roles WHERE k < 2),
    surnames (i, s) AS (
        SELECT 0, '张' UNION ALL SELECT 1, '王' UNION ALL SELECT 2, '李' UNION ALL SELECT 3, '赵'
        UNION ALL SELECT 4, '刘' UNION ALL SELECT 5, '陈' UNION ALL SELECT 6, '杨' UNION ALL SELECT 7, '黄'
        UNION ALL SELECT 8, '周' UNION ALL SELECT 9, '吴' UNION ALL SELECT 10, '孙' UNION ALL SELECT 11, '马'
        UNION ALL SELECT 12, '朱'),
    givens (i, g) AS (
        SELECT 0, '伟' UNION ALL SELECT 1, '芳' UNION ALL SELECT 2, '娜' UNION ALL SELECT 3, '敏'
        UNION ALL SELECT 4, '静' UNION ALL SELECT 5, '丽' UNION ALL SELECT 6, '强' UNION ALL SELECT 7, '磊'
        UNION ALL SELECT 8, '洋' UNION ALL SELECT 9, '艳' UNION ALL SELECT 10, '勇' UNION ALL SELECT 11, '军'
        UNION ALL SELECT 12, '杰' UNION ALL SELECT 13, '娟' UNION ALL SELECT 14, '涛' UNION ALL SELECT 15, '明'
        UNION ALL SELECT 16, '超'),
    staff (rn, wdh, k) AS (
        SELECT ROW_NUMBER() OVER (ORDER BY w.WDH, roles.k), w.WDH, roles.k
        FROM WDDZ w, roles
        WHERE LENGTH(w.WDH) = 6 AND w.MASTERNO <> '000' AND w.MASTERNO <> '110000')
SELECT SUBSTR(10010 + staff.rn, 2),
       REPLACE(REPLACE('SG', 'S', surnames.s), 'G', givens.g),
       'E10ADC3949BA59AB',
       (staff.wdh - 110000) * 2 + CASE staff.k WHEN 2 THEN 1 ELSE 0 END,
       SUBSTR(staff.wdh, 4, 1) + 1,
       staff.wdh,
       REPLACE(REPLACE('Y-M-01', 'Y', 2004 + staff.rn % 4), 'M', SUBSTR(101 + staff.rn % 12, 2)),
       CASE WHEN staff.rn % 25 = 0 THEN '2008-06-30' ELSE '3000-01-01' END,
       '2010-06-30',
       CASE WHEN staff.rn % 40 = 7 THEN 0 ELSE 1 END,
       '0002',
       0,
       1
FROM staff, surnames, givens
WHERE surnames.i = staff.rn % 13 AND givens.i = (staff.rn * 7) % 17
ORDER BY staff.rn;

INSERT INTO delcalender (curday, deadline) VALUES
    ('3000-01-01', '3010-01-05'),
    ('2009-10-01', '2009-10-08'),
    ('2009-05-01', '2009-05-03'),
    ('2009-01-25', '2009-01-31'),
    ('2008-10-01', '2008-10-07');

-- One generated row per log entry (a cross join, as MariaDB stops a recursion
-- after 1000 steps by default): a date between 2005 and 2009, a time of
-- the working day, a serial number and a sub-branch clerk (tellers 0011 to
-- 0298); each log picks its share of these rows.
CREATE TEMPORARY TABLE sample_rows (
    n INTEGER NOT NULL PRIMARY KEY,
    opdate VARCHAR(10),
    optime VARCHAR(8),
    serial VARCHAR(8),
    hydh VARCHAR(20)
);
INSERT INTO sample_rows (n, opdate, optime, serial, hydh)
WITH RECURSIVE
    hundreds (i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM hundreds WHERE i < 39),
    units (i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM units WHERE i < 99),
    seq (n) AS (SELECT hundreds.i * 100 + units.i FROM hundreds, units)
SELECT n,
       REPLACE(REPLACE(REPLACE('Y-M-D', 'Y', 2005 + n % 5), 'M', SUBSTR(101 + (n * 7) % 12, 2)), 'D', SUBSTR(101 + (n * 11) % 28, 2)),
       REPLACE(REPLACE(REPLACE('H:M:S', 'H', SUBSTR(108 + n % 9, 2)), 'M', SUBSTR(100 + (n * 13) % 60, 2)), 'S', SUBSTR(100 + (n * 17) % 60, 2)),
       SUBSTR(100000000 + (n * 7919) % 100000000, 2),
       SUBSTR(10011 + (n * 37) % 288, 2)
FROM seq;

-- The branch of a log row: the clerk's sub-branch or one of its outlets.
INSERT INTO YWLOG (LOGID, ACCNO, YJKNUMBER, OPTYPE, Opcode, OpName, Opdate, Optime, wdh, Memo)
WITH RECURSIVE kinds (k, name) AS (
    SELECT 0, '开户' UNION ALL SELECT 1, '销户' UNION ALL SELECT 2, '变更印鉴' UNION ALL SELECT 3, '挂失'
    UNION ALL SELECT 4, '解挂' UNION ALL SELECT 5, '建卡')
SELECT r.n + 1,
       REPLACE(REPLACE('WS', 'W', h.WDH), 'S', r.serial),
       SUBSTR(10000000 + r.n * 3, 2),
       kinds.name,
       h.HYDH, h.HYNAME, r.opdate, r.optime,
       CASE WHEN r.n % 3 = 0 THEN h.WDH ELSE h.WDH * 100 + r.n % 3 END,
       ''
FROM sample_rows r, HY h, kinds
WHERE h.HYDH = r.hydh AND kinds.k = r.n % 6 AND r.n < 3000
ORDER BY r.n;

INSERT INTO YYLOG (LOGID, ACCNO, chequeno, YJKNumber, pztype, money, OPTYPE, Result, Opcode, OpName, Opdate, Optime, wdh)
WITH RECURSIVE
    methods (k, name) AS (SELECT 0, '自动验印' UNION ALL SELECT 1, '人工验印' UNION ALL SELECT 2, '折角验印'),
    results (k, name) AS (SELECT 0, '通过' UNION ALL SELECT 1, '不通过' UNION ALL SELECT 2, '人工通过' UNION ALL SELECT 3, '通过'),
    vouchers (k, name) AS (SELECT 0, '转账支票' UNION ALL SELECT 1, '现金支票' UNION ALL SELECT 2, '银行汇票' UNION ALL SELECT 3, '银行本票')
SELECT r.n + 1,
       REPLACE(REPLACE('WS', 'W', h.WDH), 'S', SUBSTR(r.serial, 1, 4)),
       r.serial,
       SUBSTR(10000000 + r.n * 3, 2),
       vouchers.name,
       (r.n * 3137) % 1000000 / 100.0,
       methods.name, results.name,
       h.HYDH, h.HYNAME, r.opdate, r.optime,
       CASE WHEN r.n % 3 = 0 THEN h.WDH ELSE h.WDH * 100 + r.n % 3 END
FROM sample_rows r, HY h, methods, results, vouchers
WHERE h.HYDH = r.hydh AND methods.k = r.n % 3 AND results.k = r.n % 4 AND vouchers.k = (r.n % 7) % 4
ORDER BY r.n;

INSERT INTO HYLog (LOGID, Opcode, opName, FhCode, FhName, OPTYPE, HYDH, Memo, Opdate, Optime, wdh)
WITH RECURSIVE kinds (k, name) AS (
    SELECT 1, '增加行员' UNION ALL SELECT 2, '删除行员' UNION ALL SELECT 3, '变更行员权限'
    UNION ALL SELECT 4, '增加组' UNION ALL SELECT 5, '删除组' UNION ALL SELECT 6, '变更组权限')
SELECT r.n + 1,
       h.HYDH, h.HYNAME, m.HYDH, m.HYNAME,
       kinds.k,
       SUBSTR(10011 + (r.n * 53) % 288, 2),
       kinds.name,
       r.opdate, r.optime, h.WDH
FROM sample_rows r, HY h, HY m, kinds
WHERE h.HYDH = r.hydh AND m.HYDH = SUBSTR(10011 + (r.n * 29) % 288, 2) AND kinds.k = 1 + r.n % 6 AND r.n < 2000
ORDER BY r.n;

INSERT INTO SJLOG (LOGID, Opcode, OpName, APPNAME, IPADDR, Opdate, Optime, wdh)
SELECT r.n + 1, h.HYDH, h.HYNAME, 1 + r.n % 5, w.IPADDR, r.opdate, r.optime, h.WDH
FROM sample_rows r, HY h, WDDZ w
WHERE h.HYDH = r.hydh AND w.WDH = h.WDH
ORDER BY r.n;

INSERT INTO ZGSQLOG (LOGID, ZGCODE, ZGNAME, Opcode, ACCNO, OPTYPE, Opdate, Optime, wdh)
WITH RECURSIVE kinds (k, name) AS (
    SELECT 0, '强制通过' UNION ALL SELECT 1, '挂失解挂' UNION ALL SELECT 2, '修改印鉴'
    UNION ALL SELECT 3, '销户授权' UNION ALL SELECT 4, '重新验印')
SELECT r.n + 1,
       z.HYDH, z.HYNAME, r.hydh,
       REPLACE(REPLACE('WS', 'W', z.WDH), 'S', r.serial),
       kinds.name, r.opdate, r.optime, z.WDH
FROM sample_rows r, HY z, kinds
WHERE z.HYDH = SUBSTR(10013 + 3 * ((r.n * 37) % 96), 2) AND kinds.k = r.n % 5 AND r.n < 2500
ORDER BY r.n;

INSERT INTO ZPGLLOG (LOGID, accno, zpid, pztype, opcode, opName, opdate, optime, wdh)
WITH RECURSIVE vouchers (k, name) AS (
    SELECT 0, '转账支票' UNION ALL SELECT 1, '现金支票' UNION ALL SELECT 2, '银行汇票' UNION ALL SELECT 3, '银行本票')
SELECT r.n + 1,
       REPLACE(REPLACE('WS', 'W', h.WDH), 'S', SUBSTR(r.serial, 1, 4)),
       r.serial, vouchers.name, h.HYDH, h.HYNAME, r.opdate, r.optime, h.WDH
FROM sample_rows r, HY h, vouchers
WHERE h.HYDH = r.hydh AND vouchers.k = r.n % 4 AND r.n < 3000
ORDER BY r.n;

-- Bill recognition: each clerk passes a share of his bills of his own, from
-- none (such a clerk drops out of the seal result statistics, which count
-- only clerks with a passed bill) to all: clerk t (0 to 287) passes his j-th
-- bill (0 to 13) when j % 10 < (7t + 3) % 11. Bills that do not pass are
-- refused, refused by hand or not recognised (not counted at all).
INSERT INTO pjsblog (LOGID, accno, CHEQUENO, pztype, money, ChequeResult, opresult, opcode, OpName, opdate, optime, wdh)
WITH RECURSIVE
    outcomes (k, code, name) AS (
        SELECT 0, 0, '通过' UNION ALL SELECT 1, 4, '人工通过' UNION ALL SELECT 2, 1, '不通过'
        UNION ALL SELECT 3, 5, '人工不通过' UNION ALL SELECT 4, 2, '无法识别'),
    vouchers (k, name) AS (SELECT 0, '转账支票' UNION ALL SELECT 1, '现金支票' UNION ALL SELECT 2, '银行汇票' UNION ALL SELECT 3, '银行本票')
SELECT r.n + 1,
       REPLACE(REPLACE('WS', 'W', h.WDH), 'S', SUBSTR(r.serial, 1, 4)),
       r.serial, vouchers.name,
       (r.n * 4271) % 5000000 / 100.0,
       outcomes.name, outcomes.code,
       h.HYDH, h.HYNAME, r.opdate, r.optime,
       CASE WHEN r.n % 3 = 0 THEN h.WDH ELSE h.WDH * 100 + r.n % 3 END
FROM sample_rows r, HY h, outcomes, vouchers
WHERE h.HYDH = r.hydh AND vouchers.k = (r.n % 11) % 4
  AND outcomes.k = CASE WHEN ((r.n - r.n % 288) / 288) % 10 < ((r.n * 37) % 288 * 7 + 3) % 11
                        THEN ((r.n - r.n % 288) / 288) % 2
                        ELSE 2 + ((r.n - r.n % 288) / 288) % 3 END
ORDER BY r.n;

INSERT INTO YJREQLOG (LOGID, BranchNo, MasterNo, ACCNO, ReqType, OPDATE, OPTIME)
WITH RECURSIVE kinds (k, name) AS (SELECT 0, '下载印鉴' UNION ALL SELECT 1, '查询印鉴' UNION ALL SELECT 2, '更新印鉴')
SELECT r.n + 1,
       REPLACE('BankW', 'W', w.WDH), w.MASTERNO,
       REPLACE(REPLACE('WS', 'W', w.MASTERNO), 'S', r.serial),
       kinds.name, r.opdate, r.optime
FROM sample_rows r, HY h, WDDZ w, kinds
WHERE h.HYDH = r.hydh AND w.WDH = h.WDH * 100 + 1 + r.n % 3 AND kinds.k = r.n % 3 AND r.n < 2000
ORDER BY r.n;

INSERT INTO PTFHLOG (LOGID, ACCNO, YJKNUMBER, Opcode, OpName, Opdate, Optime, wdh)
SELECT r.n + 1,
       REPLACE(REPLACE('WS', 'W', h.WDH), 'S', r.serial),
       SUBSTR(10000000 + r.n * 7, 2),
       h.HYDH, h.HYNAME, r.opdate, r.optime,
       CASE WHEN r.n % 2 = 0 THEN h.WDH ELSE h.WDH * 100 + 1 END
FROM sample_rows r, HY h
WHERE h.HYDH = r.hydh AND r.n < 2500
ORDER BY r.n;

DROP TABLE sample_rows;
