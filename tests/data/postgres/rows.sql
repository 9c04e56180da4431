-- The rows behind results.txt. Columns that are not named are null.
insert into "Orders" (rcid, Amount, Qty, Price, Discount, State, OrderDate, ShipDate) values
  ('1', 1500,   3,    500,    10,   1, '2024-05-17 10:20:30', '2024-06-02 08:00:00'),
  ('2', 200.50, 2,    100.25, 0,    2, '2023-12-31 23:59:59', '2024-01-01 00:00:00'),
  ('3', null,   null, null,   null, 9, '2024-02-29 00:00:00', null);
insert into "Customer" (rcid, Name, City, Code) values
  ('1', 'Ann', 'Oslo', 'A1'),
  ('2', 'Bo',  'Lima', '2A'),
  ('3', 'Cy',  null,   'B%2');
insert into "T" (rcid, a, b, s) values
  ('1', 7,    2,    '12.345'),
  ('2', -3,   5,    '80'),
  ('3', null, null, '-7.999'),
  ('4', 1,    2,    '0');
insert into "tbl_stock_2019" (rcid, item_code, qty_left) values
  ('1', 'hanna', 4),
  ('2', 'bolt',  4),
  ('3', 'nut',   5);
