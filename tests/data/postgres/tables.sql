-- The tables that rules read: those of examples/shop.sql and tests/golden/golden.sql, and the
-- temporary ones that a caller of the engine makes for a form, a report and the current record.
-- Names are as the dictionary has them, in quotes; columns are bare, as the SQL prints them.
-- :moment is the type of dates and times of day of the dialect. Every table has a key, so that a
-- query with aggregates can group by it and still show the other columns.

create table "Orders" (
  rcid text primary key, Amount numeric, Qty numeric, Price numeric, Discount numeric,
  State numeric, OrderDate :moment, ShipDate :moment, Memo text, Photo text, File text);
create table "Customer" (rcid text primary key, Name text, City text, Code text);
create table "T" (
  rcid text primary key, LumentaRCID numeric, a numeric, b numeric, d :moment, s text);
create table "tbl_stock_2019" (
  rcid text primary key, item_code text, qty_left numeric, counted_at :moment);
create table "客户" (
  rcid text primary key, 名称 text, 城市 text, 金额 numeric, 签约日期 :moment);
create table "Header" (
  rcid text primary key, OrderNo text, Buyer text, Ordered :moment, Total numeric, Remark text);
create table "Lines" (
  rcid text primary key, Item text, Qty numeric, Price numeric, Due :moment);

create table "K" (rcid numeric primary key, LumentaRCID text);
create table "n" (rcid text primary key, x numeric);
create table "is" (rcid text primary key, x numeric);
create table "items" (rcid text primary key, x numeric);
create table "Odd" (rcid text primary key, Amount numeric, a numeric);
create table "[Boxed]" (rcid text primary key, x numeric);
create table "Quoted" (rcid text primary key, x numeric);

-- Fields of the form in hand, by table of the template; unquoted in the SQL, so in small letters.
create temporary table t_7_thisCaseVar_71 (
  rcid text primary key, OrderNo text, Buyer text, Ordered :moment, Total numeric, Remark text);
create temporary table t_7_thisCaseVar_72 (
  rcid text primary key, Item text, Qty numeric, Price numeric, Due :moment);
create temporary table t_a_b_c_thisCaseVar_71 (rcid text primary key, Total numeric);
create temporary table t__thisCaseVar_71 (rcid text primary key, Total numeric);

-- Detail tables of the report, with columns by number of field.
create temporary table "##t_7_repvar_72" (
  rcid text primary key, F1701 text, F1702 numeric, F1703 numeric, F1704 :moment);
create temporary table "##t_8_repvar_82" (rcid text primary key, F3301 numeric);
create temporary table "##t_a_b_c_repvar_72" (rcid text primary key, F1702 numeric);

-- The current record.
create temporary table t_sysVar_Case (
  rcid text primary key, fillDate :moment, lstfillDate :moment, state numeric,
  LockState numeric);
create temporary table t_sysVar_Case_orders (like t_sysVar_Case including indexes);
create temporary table t_sysVar_Case_t (like t_sysVar_Case including indexes);
