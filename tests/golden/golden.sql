-- Tables of odd names, and templates with tables that do not exist: on top of examples/shop.sql.
insert into data_tables (dtId, dtName, realName, refName, state) values
  (20, 'K',        'K',        null, 1),
  (21, 'n',        'n',        null, 1),
  (22, 'is',       'is',       null, 1),
  (23, 'items',    'items',    null, 1),
  (24, 'Odd',      'Odd',      null, 1),
  (25, '[Boxed]',  '[Boxed]',  null, 1),
  (26, '"Quoted"', '"Quoted"', null, 1),
  (27, 'Alias',    'T',        null, 1);

insert into data_fields (fldId, dtId, fldName, realName, baseType) values
  -- key columns that are fields of the dictionary, too
  (2001, 20, 'RCID',        'RCID',        1),
  (2002, 20, 'LumentaRCID', 'LumentaRCID', 2),
  (2101, 21, 'x', 'x', 1),
  (2201, 22, 'x', 'x', 1),
  (2301, 23, 'x', 'x', 1),
  (2401, 24, 'Boxed', '[Amount]', 1),
  (2402, 24, 'Open',  '[',        1),
  (2403, 24, 'Half',  '[ab',      1),
  (2404, 24, 'Empty', '',         1),
  (2501, 25, 'x', 'x', 1),
  (2601, 26, 'x', 'x', 1),
  (2701, 27, 'a', 'a', 1);

-- template 8: neither table exists in the database; template 9: both do
insert into template_tables (rttId, rtId, dtId, style, state) values
  (81, 8, 24, 1, 0),
  (82, 8, 23, 2, 0),
  (91, 9, 24, 1, 1);
