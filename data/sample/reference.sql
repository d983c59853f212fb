-- Reference lists read by the database configuration: the import code lists
-- (bank profile 58) and the field code tables (bank profile 61). Loaded into
-- both the seal and the local database.

-- Each row may carry an entry of several lists; an empty id (0 for the
-- account-state words) leaves the row out of that list.
CREATE TABLE ref_ImportAcc (
    RefId INTEGER NOT NULL PRIMARY KEY,
    OtherAccStateId VARCHAR(10),
    OtherAccStateName VARCHAR(40),
    OtherCurrencyId VARCHAR(10),
    OtherCurrencyName VARCHAR(40),
    OtherAccTypeName VARCHAR(40),
    OtherAccStateWordId INTEGER,
    OtherAccStateWordName VARCHAR(40)
);

INSERT INTO ref_ImportAcc (RefId, OtherAccStateId, OtherAccStateName, OtherCurrencyId, OtherCurrencyName, OtherAccTypeName, OtherAccStateWordId, OtherAccStateWordName) VALUES
    (1, '0', '正常', '01', '人民币', '基本存款账户', 1, '正常'),
    (2, '1', '冻结', '13', '港币', '一般存款账户', 2, '挂失'),
    (3, '2', '销户', '14', '美元', '专用存款账户', 3, '冻结'),
    (4, '3', '挂失', '', '', '临时存款账户', 4, '止付'),
    (5, '', '', '27', '日元', '个人结算账户', 0, ''),
    (6, '', '', '38', '欧元', '', 0, '');

CREATE TABLE P_FIELD_VAL_DEF (
    FieldName VARCHAR(30) NOT NULL,
    FieldValue VARCHAR(20) NOT NULL,
    ValueDescr VARCHAR(60)
);

INSERT INTO P_FIELD_VAL_DEF (FieldName, FieldValue, ValueDescr) VALUES
    ('Curr', 'RMB', '人民币'),
    ('Curr', 'USD', '美元'),
    ('Curr', 'HKD', '港币'),
    ('Curr', 'EUR', '欧元'),
    ('Curr', 'JPY', '日元'),
    ('TcFlag', '0', '现金'),
    ('TcFlag', '1', '转账'),
    ('SealPwdF', '0', '无密码'),
    ('SealPwdF', '1', '有支付密码'),
    ('SealPwdF', '2', '密码挂失'),
    ('PzType', '01', '转账支票'),
    ('PzType', '02', '现金支票'),
    ('PzType', '03', '银行汇票'),
    ('PzType', '04', '银行本票');
