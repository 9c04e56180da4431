-- The sample metadata database: a small shop. scripts/make_sample_db.sh makes shop.db of it.
--
-- The engine reads three views. They stand over two plain tables here: one row for each field of a
-- data table, one row for each field of a report template.
--
-- baseType   1 number   2 text   3 date   6 picture   7 link (file)   8 long text
-- real names are how the database calls a table or field when it differs from the name in rules

-- Data tables ------------------------------------------------------------------------------------

create table data_tables (
  dtId       integer primary key,
  dtName     text not null unique,  -- name in rules
  realName   text not null,         -- name in the database
  refName    text,                  -- alias in queries, if any
  state      integer not null       -- not 0: the table exists in the database
);

create table data_fields (
  fldId      integer primary key,
  dtId       integer not null references data_tables,
  fldName    text not null,
  realName   text not null,
  baseType   integer not null
);

insert into data_tables (dtId, dtName, realName, refName, state) values
  (1, 'Orders',   'Orders',         null, 1),
  (2, 'Customer', 'Customer',       null, 1),
  (3, 'T',        'T',              null, 1),
  (4, 'Stock',    'tbl_stock_2019', null, 1),
  (5, '客户',     '客户',           null, 1),
  (6, 'Header',   'Header',         null, 1),
  (7, 'Lines',    'Lines',          null, 1);

insert into data_fields (fldId, dtId, fldName, realName, baseType) values
  (101, 1, 'Amount',    'Amount',    1),
  (102, 1, 'Qty',       'Qty',       1),
  (103, 1, 'Price',     'Price',     1),
  (104, 1, 'Discount',  'Discount',  1),
  (105, 1, 'State',     'State',     1),
  (106, 1, 'OrderDate', 'OrderDate', 3),
  (107, 1, 'ShipDate',  'ShipDate',  3),
  (108, 1, 'Memo',      'Memo',      8),
  (109, 1, 'Photo',     'Photo',     6),
  (110, 1, 'File',      'File',      7),

  (201, 2, 'Name',      'Name',      2),
  (202, 2, 'City',      'City',      2),
  (203, 2, 'Code',      'Code',      2),

  (301, 3, 'a',         'a',         1),
  (302, 3, 'b',         'b',         1),
  (303, 3, 'd',         'd',         3),
  (304, 3, 's',         's',         2),

  -- a table whose names in the database differ
  (401, 4, 'Item',      'item_code', 2),
  (402, 4, 'Count',     'qty_left',  1),
  (403, 4, 'Counted',   'counted_at', 3),

  (501, 5, '名称',      '名称',      2),
  (502, 5, '城市',      '城市',      2),
  (503, 5, '金额',      '金额',      1),
  (504, 5, '签约日期',  '签约日期',  3),

  (601, 6, 'OrderNo',   'OrderNo',   2),
  (602, 6, 'Buyer',     'Buyer',     2),
  (603, 6, 'Ordered',   'Ordered',   3),
  (604, 6, 'Total',     'Total',     1),
  (605, 6, 'Remark',    'Remark',    8),

  (701, 7, 'Item',      'Item',      2),
  (702, 7, 'Qty',       'Qty',       1),
  (703, 7, 'Price',     'Price',     1),
  (704, 7, 'Due',       'Due',       3);

create view mx_v_datafield as
  select t.dtName, f.fldName, f.realName as fldRealName, f.baseType, t.dtId, f.fldId,
         t.realName as tabRealName, t.refName as tabRefName, t.state
  from data_tables t join data_fields f on f.dtId = t.dtId
  order by f.fldId;

-- Report templates -------------------------------------------------------------------------------

create table template_tables (
  rttId      integer primary key,
  rtId       integer not null,      -- the template
  dtId       integer not null references data_tables,
  style      integer not null,      -- 1: main table, else detail table
  state      integer not null       -- 1: the table exists in the database
);

-- template 7: an order form with one main table and one detail table
insert into template_tables (rttId, rtId, dtId, style, state) values
  (71, 7, 6, 1, 1),
  (72, 7, 7, 2, 1);

create view Mx_v_Rtts as
  select r.rttId, r.rtId, t.dtName, t.dtId, t.realName, t.refName, r.style, r.state
  from template_tables r join data_tables t on t.dtId = r.dtId;

-- every field of a table stands in the form; its number there is 1000 + the field's
create view mx_v_rtfs as
  select r.rttId, 1000 + f.fldId as rtfId, f.fldName, f.realName, f.baseType, f.fldId
  from template_tables r join data_fields f on f.dtId = r.dtId;
